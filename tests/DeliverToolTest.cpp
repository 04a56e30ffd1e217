#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <thread>

#include "support/LoopbackOrigin.h"
#include "support/Media.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

using nlohmann::ordered_json;
using Names = std::vector<std::string>;

// Sanitizers keep memory of their own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

// Runs "deliver" on pushes whose attachments the loopback origin serves.
class DeliverTool : public ::testing::Test {
 protected:
  pid_t start(Names arguments, const std::string& input) {
    arguments.insert(arguments.begin(), "deliver");
    return program_.start(std::move(arguments), input);
  }

  Ended run(Names arguments, const std::string& input = "") {
    return program_.wait(start(std::move(arguments), input));
  }

  // Delivers a push of this system, with --json, its payload on standard input.
  Ended deliver(const ordered_json& payload, Names options = {}) {
    options.insert(options.end(), {"--json", "-"});
    return run(options, payload.dump());
  }

  // An entry of a payload's attachments, served so from now on.
  ordered_json attachment(const std::string& identifier, Reply reply) {
    origin_.serve("/" + identifier, std::move(reply));
    return {{"att-id", identifier}, {"att-url", origin_.url("/" + identifier)}};
  }

  // One member of each object in a list.
  static Names each(const ordered_json& list, const char* key) {
    Names values;
    for (const auto& one : list) {
      values.push_back(one[key].is_string() ? one[key].get<std::string>() : one[key].dump());
    }
    return values;
  }

  static Names delivered(const ordered_json& report, std::size_t delivery = 0) {
    return each(report["deliveries"].at(delivery)["content"]["attachments"], "identifier");
  }

  TemporaryDirectory files_;
  LoopbackOrigin origin_;
  Program program_;
};

TEST_F(DeliverTool, ReportsAFullDeliveryAsJSON) {
  origin_.serve("/t/seen", {.status = 204});
  const ordered_json payload{
      {"aps", {{"alert", {{"title", "T"}, {"subtitle", "S"}, {"body", "B"}}}}},
      {"k2tid", 18446744073709551615U},
      {"mvl-atts",
       {attachment("b", {.body = pngBytes()}), attachment("a.gif", {.body = jpegBytes()})}},
      {"mvl-tk",
       {{"display", "seen?s=|s|&o=|o|&c=|country|&l=|lang|&d=|idfv|"}, {"url", origin_.url("/t")}}},
      {"nested", {1, -2, 2.5, true, nullptr, "\u00e9"}}};
  const Ended ended =
      deliver(payload, {"--screen", "375.9x812", "--orientation", "portrait", "--country", "FR",
                        "--languages", "fr-FR,en", "--idfv", "V", "--strict"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");

  ordered_json report = ended.report();
  EXPECT_GT(report["deliveries"][0]["afterMs"].get<double>(), 0);
  report["deliveries"][0]["afterMs"] = 1;
  ordered_json& content = report["deliveries"][0]["content"];
  ordered_json userInfo = payload;
  userInfo["mvl-disp-track-sent"] = true;
  EXPECT_EQ(nlohmann::json(content["userInfo"]), nlohmann::json(userInfo));
  content["userInfo"] = {};
  for (ordered_json& one : content["attachments"]) {
    EXPECT_TRUE(one["path"].get<std::string>().starts_with(program_.temporaryPath()));
    one["path"] = "";
  }
  for (ordered_json& one : report["requests"]) {
    EXPECT_LE(one["startedMs"].get<double>(), one["finishedMs"].get<double>());
    one["startedMs"] = one["finishedMs"] = 1;
  }
  EXPECT_EQ(each(report["findings"], "code"),
            (Names{"no-mutable-content", "attachment-plain-http", "extension-unknown",
                   "attachment-plain-http"}));
  report["findings"] = {};
  // The tracking address is joined as file paths are.
  const std::string host = "127.0.0.1:" + std::to_string(origin_.port());
  const std::string tracked = "http:/" + host + "/t/seen?s=375,812&o=portrait&c=FR&l=fr-FR&d=V";
  // Compared as text, because the order of the keys counts.
  EXPECT_EQ(report.dump(),
            R"({"recognised":true,"deliveries":[{"cause":"complete","afterMs":1,)"
            R"("content":{"title":"T","subtitle":"S","body":"B","userInfo":null,)"
            R"("attachments":[{"identifier":"a.gif","type":"public.jpeg",)"
            R"("path":"","bytes":16},{"identifier":"b","type":"public.png",)"
            R"("path":"","bytes":16}]}}],"requests":[{"kind":"tracking","url":")" +
                tracked +
                R"(","outcome":"finished","status":204,"bytes":0,"startedMs":1,)"
                R"("finishedMs":1,"error":null},{"kind":"attachment","url":"http://)" +
                host +
                R"(/b","identifier":"b","outcome":"finished","status":200,)"
                R"("bytes":16,"startedMs":1,"finishedMs":1,"error":null},)"
                R"({"kind":"attachment","url":"http://)" +
                host +
                R"(/a.gif","identifier":"a.gif","outcome":"finished",)"
                R"("status":200,"bytes":16,"startedMs":1,"finishedMs":1,)"
                R"("error":null}],"log":["//--// track url: )" +
                tracked + R"("],"findings":null})");
}

TEST_F(DeliverTool, ReportsToPeopleWithoutControlCharacters) {
  const ordered_json payload{
      {"aps", {{"alert", "Hi \x1B[2J\nthere"}}},
      {"k2tid", "1"},
      {"k2tb", {ordered_json::object()}},
      {"mvl-atts", {attachment("a", {.body = pngBytes()}), {{"att-id", "b"}}, 7}}};
  const Ended ended = run({"-"}, payload.dump());
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(ended.out.starts_with("Findings\n")) << ended.out;
  for (const char* part :
       {"error button-no-bid at k2tb[0].bid\n", "\nRecognised: yes\n", "Hi \\u001B[2J\\nthere\n",
        "public.png  16 bytes", "no address", "mvl.default.id"}) {
    EXPECT_NE(ended.out.find(part), std::string::npos) << part << '\n' << ended.out;
  }
  EXPECT_EQ(ended.out.find('\x1B'), std::string::npos);
}

TEST_F(DeliverTool, SendsLogLinesToStandardErrorUnlessTheyAreReported) {
  const std::string payload =
      ordered_json{{"k2tid", 1}, {"mvl-atts", {attachment("a", {.body = unknownBytes()})}}}.dump();
  const std::string unknown = "Unknown UTI for attachment with url [" + origin_.url("/a") + "]";
  EXPECT_NE(run({"-"}, payload).err.find(unknown + '\n'), std::string::npos);
  const Ended ended = run({"--json", "-"}, payload);
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.report()["log"].at(0), unknown);
}

TEST_F(DeliverTool, RefusesMalformedPayloadsAndSaysWhere) {
  const auto nested = [](int depth) {
    return R"({"a":)" + std::string(depth - 1, '[') + std::string(depth - 1, ']') + '}';
  };
  const struct {
    std::string payload;
    std::string message;  // empty: accepted
  } cases[] = {
      {"", "1:1: syntax error"},
      {"hello", "1:1: syntax error"},
      {"[1]", "1:1: not a JSON object"},
      {"\n \"text\"", "2:2: not a JSON object"},
      {"{\"a\":1,\n}", "2:1: syntax error"},
      {"{\"\u00e9\u00e9\":]", "1:7: syntax error"},  // columns are characters
      {"\xEF\xBB\xBF{]", "1:2: syntax error"},       // a byte-order mark is none of them
      {"\xEF\xBB\xBF{}", ""},
      {"{\"a\":1} x", "1:9: syntax error"},  // trailing garbage
      {"{\"a\":\"\xFF\"}", "1:7: syntax error"},
      {"{\"a\":\"\\ud800\"}", "1:13: syntax error"},  // half a surrogate pair
      {"{\"a\":1e999}", "1:10: number out of range"},
      {"{\"a\":1e308}", ""},
      {nested(512), ""},
      {nested(513), "1:517: nested deeper than 512 levels"},
      {nested(16000), "1:517: nested deeper than 512 levels"},
      {std::string("{}\0", 3), "1:3: syntax error"},  // no end of the text
      {std::string(1 << 15, ' ') + "{}", "1:1: larger than 32768 bytes"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.payload.substr(0, 40));
    const Ended ended = run({"-"}, each.payload);
    if (each.message.empty()) {
      EXPECT_EQ(ended.status, 0) << ended.err;
      continue;
    }
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(ended.err.starts_with("morvelune: -:" + each.message)) << ended.err;
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1);
  }
  for (const std::string& file :
       {files_.path() + "/missing", files_.path(), std::string("/dev/zero")}) {
    const Ended ended = run({file});
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.err.starts_with("morvelune: " + file + ":1:1: ")) << ended.err;
  }
}

TEST_F(DeliverTool, RefusesWrongUsage) {
  for (const char* options :
       {"", "two", "--unknown", "--time-limit=-1", "--time-limit=inf", "--time-limit=1e3",
        "--time-limit=86401", "--linger=soon", "--linger=.", "--screen=375", "--screen=375x",
        "--screen=0x10x5", "--orientation=sideways", "--keep=/dev/null", "--keep="}) {
    const Ended ended = *options == 0 ? run({}) : run({"-", options}, "{}");
    EXPECT_EQ(ended.status, 2) << options;
    EXPECT_TRUE(ended.err.starts_with("morvelune: ")) << ended.err;
  }
  EXPECT_EQ(run({"--languages=", "-"}, "{}").status, 0);  // an empty text is no missing one
}

TEST_F(DeliverTool, DeliversTheRestWhateverAServerDoes) {
  origin_.serve("/loop", {.status = 302, .headers = {{"Location", origin_.url("/loop")}}});
  using Fate = Reply::Fate;
  const struct {
    const char* description;
    ordered_json address;
    const char* outcome;
    Fate fate = Fate::whole;  // of "/bad"
  } cases[] = {
      {"reset", origin_.url("/bad"), "failed", Fate::reset},
      {"cut short", origin_.url("/bad"), "failed", Fate::cutShort},
      {"404", origin_.url("/missing"), "finished"},
      {"endless redirect", origin_.url("/loop"), "failed"},
      {"refused", "http://127.0.0.1:" + std::to_string(LoopbackOrigin::closedPort()), "failed"},
      {"no address", nullptr, "failed"},
      {"bad address", "http://a b", "failed"},
      {"another scheme", "file:///etc/passwd", "failed"},
      {"silent", origin_.url("/bad"), "pending", Fate::silent},
      {"stall", origin_.url("/bad"), "pending", Fate::stall},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.description);
    origin_.serve("/bad", {.body = pngBytes(), .fate = each.fate});
    const Ended ended = deliver({{"k2tid", 1},
                                 {"mvl-atts",
                                  {{{"att-id", "bad"}, {"att-url", each.address}},
                                   attachment("good", {.body = pngBytes()})}}},
                                {"--strict", "--time-limit", "0.7"});
    EXPECT_EQ(ended.status, 3);
    EXPECT_LT(ended.seconds, 1.7);
    const ordered_json report = ended.report();
    EXPECT_EQ(delivered(report), Names{"good"});
    const ordered_json& request = report["requests"].at(0);
    EXPECT_EQ(request["outcome"], each.outcome);
    EXPECT_EQ(request["url"], each.address.is_null() ? "" : each.address);
    EXPECT_EQ(report["deliveries"][0]["cause"],
              request["outcome"] == "pending" ? "time-limit" : "complete");
    EXPECT_EQ(request["error"].is_string(), request["outcome"] == "failed");
    EXPECT_EQ(request["finishedMs"].is_null(), request["outcome"] == "pending");
  }
}

TEST_F(DeliverTool, IsStrictAboutRefusedAndUnknownFilesOnly) {
  const std::pair<Reply, int> cases[] = {
      {{.body = pngBytes()}, 0},
      {{.status = 500, .body = pngBytes()}, 0},  // an answer, whose body is taken as it is
      {{.body = unknownBytes()}, 3},
      {{.body = jpegBytes(), .bodySize = (10 << 20) + 1}, 3},  // too large for an image
  };
  for (const auto& [reply, status] : cases) {
    const ordered_json payload{{"k2tid", 1}, {"mvl-atts", {attachment("a", reply)}}};
    EXPECT_EQ(deliver(payload, {"--strict"}).status, status);
    EXPECT_EQ(deliver(payload).status, 0);
  }
}

TEST_F(DeliverTool, LingersForTheSecondDelivery) {
  using namespace std::chrono_literals;
  const ordered_json payload{{"k2tid", 1},
                             {"mvl-atts",
                              {attachment("d", {.body = pngBytes(), .delay = 800ms}),
                               attachment("c", {.body = pngBytes()}),
                               attachment("b", {.body = pngBytes(), .delay = 800ms}),
                               attachment("a", {.body = pngBytes()})}}};
  const ordered_json once = deliver(payload, {"--time-limit", "0.3"}).report();
  EXPECT_EQ(each(once["deliveries"], "cause"), Names{"time-limit"});
  EXPECT_EQ(delivered(once), (Names{"a", "c"}));

  const Ended ended = deliver(payload, {"--time-limit", "0.3", "--linger", "60"});
  EXPECT_LT(ended.seconds, 10);  // ends as soon as nothing is pending
  const ordered_json twice = ended.report();
  EXPECT_EQ(each(twice["deliveries"], "cause"), (Names{"time-limit", "complete"}));
  EXPECT_EQ(delivered(twice, 0), (Names{"a", "c"}));
  EXPECT_EQ(delivered(twice, 1), (Names{"a", "b", "c", "d"}));
}

TEST_F(DeliverTool, HandsBackWhatItHasNothingToDoFor) {
  const struct {
    const char* payload;
    bool recognised;
    const char* body;
  } cases[] = {
      {R"({"aps":{"alert":"plain"},"mvl-atts":[{"att-url":"http://127.0.0.1/"}]})", false, "plain"},
      {R"({"aps":{"alert":{"body":"B","title":7}},"k2tid":null,"mvl-atts":"x"})", true, "B"},
      {R"({"aps":[],"k2tid":"1","mvl-atts":[],"mvl-tk":{"url":"http://h"}})", true, ""},
  };
  for (const auto& each : cases) {
    const Ended ended = run({"--json", "--strict", "--linger", "60", "-"}, each.payload);
    EXPECT_EQ(ended.status, 0);
    const ordered_json report = ended.report();
    EXPECT_EQ(report["recognised"], each.recognised);
    EXPECT_EQ(DeliverTool::each(report["deliveries"], "cause"), Names{"handed-back"});
    EXPECT_EQ(report["deliveries"][0]["content"]["body"], each.body);
    EXPECT_EQ(report["requests"], ordered_json::array());
  }
}

TEST_F(DeliverTool, KeepsAttachmentsUnderSafeNamesThatWereFree) {
  ordered_json attachments{attachment("photo.gif", {.body = jpegBytes()}),
                           attachment("movie", {.body = mp4Bytes()}),
                           attachment("", {.body = pngBytes()})};
  attachments[1]["att-id"] = "a b\u00e9" + std::string(150, 'c');
  const ordered_json payload{{"k2tid", 1}, {"mvl-atts", attachments}};
  const std::string folder = files_.path() + "/new/kept";
  const auto keep = [&] { return deliver(payload, {"--keep", folder}).report(); };
  const ordered_json report = keep();
  const Names expected{folder + "/1-attachment.png",
                       folder + "/2-a_b__" + std::string(95, 'c') + ".mp4",
                       folder + "/3-photo.gif.jpg"};
  const ordered_json& shown = report["deliveries"][0]["content"]["attachments"];
  EXPECT_EQ(each(shown, "path"), expected);
  EXPECT_EQ(each(shown, "bytes"), (Names{"16", "16", "16"}));
  EXPECT_EQ(contentsOf(expected[2]), jpegBytes());
  files_.write("new/kept/1-attachment.png", "mine");
  keep();
  EXPECT_EQ(contentsOf(expected[0]), "mine");
  EXPECT_EQ(contentsOf(folder + "/1-attachment-2.png"), pngBytes());
}

TEST_F(DeliverTool, KeepsAttachmentsAcrossFileSystems) {
  std::string folder = "/dev/shm/morvelune-test-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) GTEST_SKIP() << "no second file system";
  deliver({{"k2tid", 1}, {"mvl-atts", {attachment("a", {.body = pngBytes()})}}},
          {"--keep", folder});
  EXPECT_EQ(contentsOf(folder + "/1-a.png"), pngBytes());
  std::filesystem::remove_all(folder);
}

TEST_F(DeliverTool, CleansUpWhenASignalEndsIt) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const ordered_json payload{
        {"k2tid", 1},
        {"mvl-atts",
         {attachment("a", {.body = pngBytes(), .bodySize = 1 << 16, .fate = Reply::Fate::stall})}}};
    const pid_t pid = start({"-"}, payload.dump());
    // The run's folder, and in it the file that is being written.
    for (int i = 0; i < 1000 && program_.temporaryNames().size() < 2; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(program_.temporaryNames().size(), 2U);
    kill(pid, signal);
    const Ended ended = program_.wait(pid);
    EXPECT_EQ(ended.status, -signal);
    EXPECT_LT(ended.seconds, 5);
    EXPECT_EQ(ended.out, "");
  }
}

TEST_F(DeliverTool, DownloadsAllAttachmentsAtOnce) {
  ordered_json attachments;
  for (int i = 0; i < 10; ++i) {
    attachments.push_back(
        attachment(std::to_string(i), {.body = pngBytes(), .delay = std::chrono::seconds(1)}));
  }
  const Ended ended = deliver({{"k2tid", 1}, {"mvl-atts", attachments}});
  EXPECT_EQ(delivered(ended.report()).size(), 10U);
  EXPECT_GE(ended.seconds, 1);
  EXPECT_LT(ended.seconds, 1.5);
}

TEST_F(DeliverTool, DeliversTheLargestMovieInLittleMemory) {
  const Ended ended =
      deliver({{"k2tid", 1},
               {"mvl-atts", {attachment("movie", {.body = mp4Bytes(), .bodySize = 50 << 20})}}});
  EXPECT_EQ(delivered(ended.report()), Names{"movie"});
  constexpr long bound = 24 * 1024;
  // A program starts with its maker's peak on its account, which is low when CTest runs this alone.
  rusage own{};
  getrusage(RUSAGE_SELF, &own);
  if (!sanitized && own.ru_maxrss < bound) {
    EXPECT_LT(ended.peakKilobytes, bound);
  }
}

}  // namespace
}  // namespace morvelune::testing
