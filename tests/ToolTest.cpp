// The tool as a program: the runs that data/tool.json describes, and those that no table can.
//
// A case is merged into what is common to its group, object by object. It tells the arguments and
// what comes on standard input ("without": the places that are taken out of it), then the exit
// status, what standard output and standard error are ("out", "err") or have in them, and the bytes
// of files that it leaves ("kept"). "refused" is how the one line begins that says why there is no
// output.
//
// "@files" in a text is a folder with the case's files, "@origin" the server that serves what
// "serve" says, all of which must be asked for, "@temporary" the tool's folder for temporary files.
// In a report, at the places that JSON pointers name, "text*" is any text that begins so, "#" any
// number and "..." anything. "sizes" are those of lists there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>

#include "support/Eventually.h"
#include "support/Media.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"
#include "support/TestData.h"

namespace morvelune::testing {
namespace {

using nlohmann::ordered_json;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using Pointer = ordered_json::json_pointer;

// Sanitizers keep memory of their own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

const Keys keys{"arguments", "input",  "without", "files",  "serve",    "status", "out", "err",
                "outHas",    "errHas", "refused", "report", "findings", "sizes",  "kept"};

// Cases with what is common to all of them.
struct Group {
  std::string name;
  ordered_json common;
  ordered_json cases;
  friend void PrintTo(const Group& group, std::ostream* out) { *out << group.name; }
};

std::vector<Group> groups() {
  std::vector<Group> all;
  for (const ordered_json& each : testData("data/tool.json")) {
    checked(each, {"name", "common", "cases"});
    all.push_back({each["name"], each.value("common", ordered_json::object()), each["cases"]});
  }
  return all;
}

void merge(ordered_json& into, const ordered_json& from) {
  for (const auto& [key, value] : from.items()) {
    ordered_json& old = into[key];
    if (old.is_object() && value.is_object()) {
      merge(old, value);
    } else {
      old = value;
    }
  }
}

// `actual` with the patterns of `expected` in the places that they match.
ordered_json masked(ordered_json actual, const ordered_json& expected) {
  if (expected == "..." || (expected == "#" && actual.is_number())) return expected;
  if (expected.is_string() && actual.is_string()) {
    const std::string pattern = expected, text = actual;
    return pattern.ends_with('*') && text.starts_with(pattern.substr(0, pattern.size() - 1))
               ? expected
               : actual;
  }
  if (!expected.is_structured()) return actual;
  for (const auto& [key, value] : expected.items()) {
    const Pointer place = Pointer() / key;  // in a list, too
    if (actual.contains(place)) actual[place] = masked(actual[place], value);
  }
  return actual;
}

class ToolTest : public ::testing::Test {
 protected:
  // A push of this system with one attachment, "a".
  std::string push(const std::string& path) const {
    const ordered_json attachment{{"att-id", "a"}, {"att-url", origin_->url(path)}};
    return ordered_json{{"k2tid", 1}, {"mvl-atts", {attachment}}}.dump();
  }

  // That it took little memory, where that can be measured: its maker's peak is low when CTest runs
  // a test alone.
  static void checkPeak(const Ended& ended) {
    constexpr long bound = 24 * 1024;
    if (sanitized || ended.makersKilobytes >= bound) GTEST_SKIP() << "no peak can be measured here";
    EXPECT_LT(ended.peakKilobytes, bound);
  }

  TemporaryDirectory files_;
  std::optional<LoopbackOrigin> origin_{std::in_place};
  Program program_;
};

class ToolRuns : public ToolTest, public ::testing::WithParamInterface<Group> {
 protected:
  // A case with the group's part, and the names of this run filled in.
  ordered_json whole(const ordered_json& given) const {
    ordered_json all = {{"status", 0}};
    for (const std::string& key : keys) all.emplace(key, nullptr);
    merge(all, checked(GetParam().common, keys));
    merge(all, given);
    for (const ordered_json& place : all["without"]) {
      all["input"] = all["input"].patch({{{"op", "remove"}, {"path", place}}});
    }
    std::string text = all.dump();
    replaceAll(text, "@files", files_.path());
    replaceAll(text, "@temporary", program_.temporaryPath());
    replaceAll(text, "@origin", origin_->url(""));
    replaceAll(text, "@host", "127.0.0.1:" + std::to_string(origin_->port()));
    replaceAll(text, "@closed", std::to_string(LoopbackOrigin::closedPort()));
    return ordered_json::parse(text);
  }

  Ended run(const ordered_json& given) {
    for (const auto& [name, text] : given["files"].items()) files_.write(name, textOf(text));
    for (const auto& [path, reply] : given["serve"].items()) origin_->serve(path, replyOf(reply));
    return program_.run(given["arguments"], textOf(given["input"]));
  }

  static void checkStreams(const ordered_json& wanted, const Ended& ended) {
    EXPECT_EQ(ended.status, wanted["status"]) << ended.err;
    EXPECT_LT(ended.seconds, 30);
    for (const std::string acting : {"\x1B", "\u009B", "\u202E", "\u2066"}) {
      EXPECT_EQ((ended.err + ended.out).find(acting), std::string::npos);
    }
    EXPECT_EQ(ended.out.find("%@"), std::string::npos) << "an unfilled message";
    EXPECT_EQ(ended.out, wanted["out"].is_null() ? ended.out : wanted["out"].get<std::string>());
    EXPECT_EQ(ended.err, wanted["err"].is_null() ? ended.err : wanted["err"].get<std::string>());
    for (const std::string part : wanted["outHas"]) {
      EXPECT_NE(ended.out.find(part), std::string::npos) << part;
    }
    for (const std::string part : wanted["errHas"]) {
      EXPECT_NE(ended.err.find(part), std::string::npos) << part;
    }
    if (!wanted["refused"].is_null()) {
      EXPECT_EQ(ended.out, "");
      EXPECT_TRUE(ended.err.starts_with("morvelune: " + wanted["refused"].get<std::string>()));
      EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1);
    }
  }

  // One report, or those of all lines.
  static ordered_json reportOf(const ordered_json& arguments, const Ended& ended) {
    if (std::count(arguments.begin(), arguments.end(), "--jsonl") == 0) return ended.report();
    ordered_json all = ordered_json::array();
    std::istringstream rest(ended.out);
    for (std::string line; std::getline(rest, line);) all.push_back(ordered_json::parse(line));
    return all;
  }

  static void checkReport(const ordered_json& wanted, const ordered_json& report) {
    for (const auto& [place, expected] : wanted["report"].items()) {
      // Compared as text, because the order of the keys counts.
      const ordered_json found = masked(report.at(Pointer(place)), expected);
      EXPECT_EQ(found.dump(), expected.dump()) << place;
    }
    for (const auto& [place, size] : wanted["sizes"].items()) {
      EXPECT_EQ(report.at(Pointer(place)).size(), size) << place;
    }
    if (wanted["findings"].is_null()) return;
    ordered_json findings = ordered_json::array();
    for (const ordered_json& each : report.at("findings")) {
      findings.push_back(each["code"].get<std::string>() + ' ' + each["path"].get<std::string>());
    }
    EXPECT_EQ(findings, wanted["findings"]);
  }
};

INSTANTIATE_TEST_SUITE_P(Table, ToolRuns, ::testing::ValuesIn(groups()),
                         [](const auto& tested) { return tested.param.name; });

TEST_P(ToolRuns, EndAsWritten) {
  ASSERT_EQ(mkfifo((files_.path() + "/pipe.png").c_str(), 0600), 0);
  for (const ordered_json& each : casesOf(GetParam().cases, keys)) {
    origin_.emplace();
    const ordered_json wanted = whole(each);
    SCOPED_TRACE(wanted.dump().substr(0, 1000));
    const Ended ended = run(wanted);
    checkStreams(wanted, ended);
    // A null is empty, and an empty list of findings is one.
    if (!wanted["report"].empty() || !wanted["sizes"].empty() || wanted["findings"].is_array()) {
      checkReport(wanted, reportOf(wanted["arguments"], ended));
    }
    std::string asked;
    for (const ReceivedRequest& request : origin_->requests()) asked += request.target + "\n";
    for (const auto& [path, reply] : wanted["serve"].items()) {
      EXPECT_NE(asked.find(path), std::string::npos) << path;
    }
    for (const auto& [path, text] : wanted["kept"].items()) {
      EXPECT_EQ(contentsOf(path), textOf(text)) << path;
    }
  }
}

// What `each` gives for 0, 1, 2 ..., about so many bytes of it.
std::string many(std::size_t bytes, const std::function<std::string(int)>& each) {
  std::string text;
  for (int i = 0; text.size() + 160 < bytes; ++i) text += each(i);
  return text;
}

std::string again(std::size_t bytes, const std::string& text) {
  return many(bytes, [&text](int) { return text; });
}

// Three letters, different ones for each number.
std::string name(int i) {
  std::string letters;
  for (int n = 0; n < 3; ++n, i /= 26) letters += static_cast<char>('a' + i % 26);
  return letters;
}

// Payloads of 32 KB whose parts multiply: addresses by actions, tags by actions, names that hold
// bars or are long, characters that JSON writes as six, buttons that repeat a large one, entries of
// two bytes, blanks before deep lines.
std::vector<std::string> hostilePayloads() {
  const auto tracking = [](const std::string& url, const std::string& params) {
    const std::size_t rest = 32000 - url.size() - params.size();
    return "{\"mvl-tk\":{\"url\":\"https://h/" + url + "\"," +
           many(rest, [](int i) { return '"' + name(i) + "\":\"\","; }) + "\"params\":{" + params +
           "}}}";
  };
  const std::string bars = many(11000, [](int i) {
    return (i == 0 ? "\"" : ",\"") + std::string(i % 140, '|') + name(i) + "\":\"\"";
  });
  const std::string open(500, '[');
  const std::string closed(500, ']');
  return {tracking(std::string(9000, 'x'), ""),
          tracking(std::string(9000, ' '), ""),
          tracking(many(20000, [](int i) { return "%7c" + name(i); }) + "%7c", ""),
          tracking(std::string(8000, '|'), bars),
          tracking(std::string(16000, '|'), '"' + std::string(8000, '|') + R"(x":"")"),
          tracking('|' + again(30000, R"(\u0001)") + '|', ""),
          R"({"k2tb":[{"bid":"b","ccp":{"x":[0)" + again(16000, ",1") + "]}}" +
              again(16000, R"(,{"bid":"b"})") + "]}",
          R"({"mvl-atts":[7)" + again(32000, ",7") + "]}",
          R"({"x":)" + open + '1' + again(31000, ",1") + closed + '}'};
}

TEST_F(ToolTest, InspectsAnyPayloadInBoundedWork) {
  for (const std::string& payload : hostilePayloads()) {
    for (const std::string form : {"--strict", "--json"}) {
      const Ended ended = program_.run({"inspect", form, "-"}, payload);
      SCOPED_TRACE(payload.substr(0, 60) + form);
      EXPECT_EQ(ended.status, 3) << ended.err;
      EXPECT_LT(ended.out.size(), 4U << 20);
      if (!sanitized) {
        EXPECT_LT(ended.seconds, 1);
        EXPECT_LT(ended.peakKilobytes, 64 * 1024);
      }
    }
  }
}

// A signal ends it at once, and its time runs, whatever the payload.
TEST_F(ToolTest, DeliversAHostilePayloadWithinItsTime) {
  const std::string payload = hostilePayloads()[2];
  EXPECT_LT(program_.run({"deliver", "--time-limit", "1", "-"}, payload).seconds, 10);
  const pid_t pid = program_.start({"deliver", "-"}, payload);
  kill(pid, SIGTERM);
  const Ended ended = program_.wait(pid);
  EXPECT_LT(ended.seconds, 10);
}

TEST_F(ToolTest, CleansUpWhenASignalEndsIt) {
  origin_->serve("/a", {.body = pngBytes(), .bodySize = 1 << 16, .fate = Reply::Fate::stall});
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    const pid_t pid = program_.start({"deliver", "-"}, push("/a"));
    // The run's folder, and in it the file that is being written.
    EXPECT_TRUE(eventually([this] { return program_.temporaryNames().size() == 2; }));
    kill(pid, signal);
    const Ended ended = program_.wait(pid);
    EXPECT_EQ(ended.status, -signal);
    EXPECT_LT(ended.seconds, 30);
    EXPECT_EQ(ended.out, "");
  }
}

TEST_F(ToolTest, DeliversTheLargestMovieInLittleMemory) {
  origin_->serve("/movie", {.body = mp4Bytes(), .bodySize = 50 << 20});
  const Ended ended = program_.run({"deliver", "-"}, push("/movie"));
  EXPECT_NE(ended.out.find("52428800 bytes"), std::string::npos) << ended.out;
  checkPeak(ended);
}

// Each kind of call fails once, at every place where it is made.
TEST_F(ToolTest, LosesOneAttachmentAtMostWhereOneCallOfTheSystemFails) {
  ordered_json payload{{"k2tid", 1}};
  for (const char* name : {"a", "b", "c"}) {
    const std::string path = std::string("/").append(name);
    origin_->serve(path, {.body = pngBytes()});
    payload["mvl-atts"].push_back({{"att-id", name}, {"att-url", origin_->url(path)}});
  }
  const std::string mark = files_.path() + "/mark";
  for (const std::string call : {"pthread_create", "socketpair", "open", "write", "rename"}) {
    bool hasFailed = true;
    for (int k = 1; hasFailed; ++k) {
      SCOPED_TRACE(call + " " + std::to_string(k));
      program_.environment = {"LD_PRELOAD=" FAILING_CALLS, "ASAN_OPTIONS=verify_asan_link_order=0",
                              "FAIL_CALL=" + call + " " + std::to_string(k), "FAIL_MARK=" + mark};
      const Ended ended = program_.run({"deliver", "--json", "-"}, payload.dump());
      hasFailed = std::filesystem::remove(mark);
      EXPECT_TRUE(ended.status == 0 || ended.status == 3 || (ended.status == 1 && hasFailed))
          << ended.status;
      EXPECT_TRUE(hasFailed || k > 1) << "it is never called";
      if (ended.status == 1) {
        EXPECT_NE(ended.err.find("morvelune: "), std::string::npos) << "it ends without a word";
        continue;
      }
      const ordered_json deliveries = ended.report()["deliveries"];
      EXPECT_EQ(deliveries.size(), 1U);
      EXPECT_GE(deliveries.at(0)["content"]["attachments"].size(), hasFailed ? 2U : 3U);
    }
  }
}

TEST_F(ToolTest, GoodServersAreNotHeldUpByDishonestOnes) {
  ordered_json payload{{"k2tid", 1}};
  const auto attach = [&](const std::string& path) {
    payload["mvl-atts"].push_back({{"att-id", path}, {"att-url", origin_->url(path)}});
  };
  const ordered_json data = testData("data/session.json");
  for (const ordered_json& each : casesOf(data["cases"], {"url", "reply", "gives", "fails"})) {
    if (!each.contains("reply") || !each.contains("fails")) continue;
    const std::string path = "/bad/" + std::to_string(payload["mvl-atts"].size());
    origin_->serve(path, replyOf(each["reply"]));
    attach(path);
  }
  EXPECT_GE(payload["mvl-atts"].size(), 10U);
  for (int i = 0; i < 10; ++i) {
    const std::string path = "/good/" + std::to_string(i);
    origin_->serve(path, {.body = pngBytes(), .bodySize = 1 << 20});
    attach(path);
  }
  const Ended ended = program_.run({"deliver", "--json", "--time-limit=5", "-"}, payload.dump());
  const ordered_json report = ended.report();
  for (const ordered_json& each : report["requests"]) {
    if (each["url"].get<std::string>().find("/good/") == std::string::npos) continue;
    EXPECT_LT(each.value("finishedMs", 5000.0), 4000) << each;
  }
  checkPeak(ended);
}

TEST_F(ToolTest, TellsWhatIsWrongWithItsFolderAndPrintsNoEscape) {
  const std::string errors = files_.path() + "/errors";
  const auto errorsOf = [&](const std::string& environment) {
    const std::string command =
        "echo '{}' | env " + environment + " " MORVELUNE_PATH " deliver - 2>" + errors + " >&2";
    EXPECT_NE(std::system(command.c_str()), -1);
    return contentsOf(errors);
  };
  EXPECT_THAT(errorsOf("TMPDIR=$(printf '/none\\033\\233')"),
              HasSubstr("no temporary folder in /none\\u001B\\x9B"));
  EXPECT_THAT(errorsOf("ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=" FAILING_CALLS
                       " FAIL_CALL='remove 1' FAIL_MARK=" +
                       files_.path() + "/mark TMPDIR=" + files_.path()),
              ContainsRegex("morvelune: /.*/morvelune-.* cannot be removed: .* busy"));
}

// The answer comes while the program still waits for more.
TEST_F(ToolTest, AnswersALineBeforeTheNextOneComesElseFails) {
  const std::string command =
      "{ echo '{}'; for i in $(seq 500); do [ -s " + files_.path() +
      "/out ] && break; sleep 0.02; done; wc -l <" + files_.path() + "/out >" + files_.path() +
      "/seen; } | " MORVELUNE_PATH " inspect --jsonl >" + files_.path() + "/out";
  EXPECT_NE(std::system(command.c_str()), -1);
  EXPECT_EQ(contentsOf(files_.path() + "/seen"), "1\n");
  for (const std::string end : {" inspect --jsonl >/dev/full", " inspect --jsonl >&-",
                                " inspect --jsonl 2>&- <&-", " type " MORVELUNE_PATH " >&-"}) {
    const int status = std::system(("echo '{}' | " MORVELUNE_PATH + end).c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1) << end;
  }
}

}  // namespace
}  // namespace morvelune::testing
