#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/Media.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

using nlohmann::ordered_json;
using Names = std::vector<std::string>;

// A push that is right in every way; a case changes members of it. A null takes one out.
ordered_json payload(const ordered_json& changes) {
  ordered_json result{{"aps", {{"alert", "Hi"}, {"mutable-content", 1}}}, {"k2tid", "1"}};
  result.merge_patch(changes);
  return result;
}

ordered_json attachment(const std::string& file) {
  return {{"att-id", "a"}, {"att-url", "https://c.example/" + file}};
}

// Each as "code path", in order.
Names findingsOf(const ordered_json& report) {
  Names findings;
  for (const auto& one : report["findings"]) {
    findings.push_back(one["code"].get<std::string>() + ' ' + one["path"].get<std::string>());
  }
  return findings;
}

std::string lines(const std::vector<std::string>& texts) {
  std::string all;
  for (const auto& text : texts) all += text + '\n';
  return all;
}

class InspectTool : public ::testing::Test {
 protected:
  Ended inspect(const ordered_json& changes, Names options = {}) {
    options.insert(options.begin(), "inspect");
    options.insert(options.end(), {"--json", "-"});
    return program_.run(options, payload(changes).dump());
  }

  // The answers to the lines of `input`, one for each.
  std::vector<ordered_json> inspectLines(const std::string& input, int status) {
    const Ended ended = program_.run({"inspect", "--jsonl"}, input);
    EXPECT_EQ(ended.status, status);
    EXPECT_EQ(ended.err, "");
    std::vector<ordered_json> answers;
    std::istringstream rest(ended.out);
    for (std::string line; std::getline(rest, line);) answers.push_back(ordered_json::parse(line));
    return answers;
  }

  TemporaryDirectory files_;
  Program program_;
};

TEST_F(InspectTool, FindsWhatIsWrongAndWhere) {
  const struct {
    std::string changes;
    Names findings;
  } cases[] = {
      {"", {}},
      {R"("k2tid":null)", {"not-recognised k2tid"}},
      {R"("k2tid":[])", {}},  // any value will do
      {R"("aps":null)", {"no-mutable-content aps.mutable-content", "no-alert aps.alert"}},
      {R"("aps":7)",
       {"wrong-type aps", "no-mutable-content aps.mutable-content", "no-alert aps.alert"}},
      {R"("aps":{"mutable-content":true})", {"no-mutable-content aps.mutable-content"}},
      {R"("aps":{"mutable-content":"1"})", {"no-mutable-content aps.mutable-content"}},
      {R"("aps":{"alert":""})", {"no-alert aps.alert"}},
      {R"("aps":{"alert":7})", {"wrong-type aps.alert", "no-alert aps.alert"}},
      {R"("aps":{"alert":{"body":"","title":7}})",
       {"wrong-type aps.alert.title", "no-alert aps.alert"}},
      {R"("aps":{"alert":{"subtitle":"S"}})", {}},
      {R"("aps":{"alert":{"loc-key":"K"}})", {}},       // the app translates it
      {R"("x":")" + std::string(4035, 'x') + '"', {}},  // 4096 bytes
      {R"("x":")" + std::string(4036, 'x') + '"', {"payload-too-large ."}},

      {R"("mvl-tk":7)", {"wrong-type mvl-tk", "tracking-no-url mvl-tk.display"}},
      {R"("mvl-tk":{"url":"https://t","display":"d","dismiss":"d"})", {}},
      {R"("mvl-tk":{"display":"d"})", {"tracking-no-url mvl-tk.display"}},
      {R"("mvl-tk":{"url":"https://t"})", {"tracking-no-url mvl-tk.display"}},
      {R"("mvl-tk":{"url":7,"params":"x","display":[]})",
       {"wrong-type mvl-tk.url", "wrong-type mvl-tk.params", "wrong-type mvl-tk.display",
        "tracking-no-url mvl-tk.display"}},
      {R"("mvl-tk":{"url":"https://t","display":"d","dismiss":"a b"})",
       {"action-no-url mvl-tk.dismiss"}},
      {R"("mvl-tk":{"url":"https://t","display":"|zed|"})", {"tracking-no-url mvl-tk.display"}},
      {R"("mvl-tk":{"url":"https://t","display":"%7Czed%7C%7cTop%7c?|idfv|"})",
       {"tag-unfilled mvl-tk.display", "tag-unfilled mvl-tk.display"}},
      // A parameter that is no text, and the second of two tags of one name.
      {R"("mvl-tk":{"url":"https://t","display":"%7cx%7c","params":{"x":[]}})",
       {"tag-unfilled mvl-tk.display"}},
      {R"("mvl-tk":{"url":"https://t","display":"%7cx%7c%7cx%7c","params":{"x":1}})",
       {"tag-unfilled mvl-tk.display"}},
      // Bars that are no tag's.
      {R"("mvl-tk":{"url":"https://t","display":"%7c?a=%7c&b=%7c%7c"})", {}},

      {R"("mvl-atts":"x")", {"wrong-type mvl-atts"}},
      {R"("mvl-atts":[{"att-url":"https://c/a.png"}])", {}},
      {R"("mvl-atts":[7])", {"wrong-type mvl-atts[0]", "attachment-no-url mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":7,"att-id":7}])",
       {"wrong-type mvl-atts[0].att-url", "wrong-type mvl-atts[0].att-id",
        "attachment-no-url mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":""}])", {"attachment-no-url mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"https://c/a b.png"}])",
       {"attachment-bad-url mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"c/a.png"}])", {"attachment-scheme mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"file:///a.png"}])", {"attachment-scheme mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"HTTP://c/a.png"}])",
       {"attachment-plain-http mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"https://c/%7cuid%7c/a.png"}])",
       {"tag-unfilled mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"https://c/a.png","att-id":"a/b"}])",
       {"attachment-id-slash mvl-atts[0].att-id"}},
      {R"("mvl-atts":[{"att-url":"https://c/a.png","att-id":"a"},{"att-url":"https://c/a.png"},)"
       R"({"att-url":"https://c/a.png","att-id":"a"},{"att-url":"https://c/a.png","att-id":"A"}])",
       {"attachment-id-missing mvl-atts[1].att-id", "attachment-id-repeated mvl-atts[2].att-id"}},
      {R"("mvl-atts":[{"att-url":"https://c/a.webp"}])", {"extension-unknown mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"https://c/a"}])", {"extension-unknown mvl-atts[0].att-url"}},
      {R"("mvl-atts":[{"att-url":"https://c/a.png/?x=b.webp"}])", {}},
      {R"("mvl-atts":[{"att-url":"https://c/a.mp3.Png"}])", {"extension-case mvl-atts[0].att-url"}},

      {R"("k2tb":7)", {"wrong-type k2tb"}},
      {R"("k2tb":[{"bid":"b"},{"bid":"B"},{"bid":"b"}])", {"button-bid-repeated k2tb[2].bid"}},
      {R"("k2tb":["b",{"ccp":[1],"delay-dismiss":[1]}])",
       {"wrong-type k2tb[0]", "button-no-bid k2tb[0].bid", "wrong-type k2tb[1].ccp",
        "wrong-type k2tb[1].delay-dismiss", "button-no-bid k2tb[1].bid"}},
      {R"("k2tb":[{"bid":7,"delay-dismiss":0.5}])",
       {"wrong-type k2tb[0].bid", "button-no-bid k2tb[0].bid"}},
      {R"("k2tb":[{"bid":"com.apple.UNNotificationDefaultActionIdentifier"}])",
       {"button-bid-reserved k2tb[0].bid"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.changes.substr(0, 200));
    const ordered_json report = inspect(ordered_json::parse('{' + each.changes + '}')).report();
    EXPECT_EQ(findingsOf(report), each.findings);
    for (const auto& one : report["findings"]) {
      EXPECT_EQ(one["message"].get<std::string>().find("%@"), std::string::npos);
    }
  }
}

TEST_F(InspectTool, ReportsAsOneJSONObject) {
  const ordered_json changes{
      {"promo", {{"n", 18446744073709551615U}}},
      {"mvl-tk",
       {{"url", "https://t.example/"},
        {"params", {{"u", "7"}}},
        {"dismiss", "gone?z=|zed|&z=|zed|"},
        {"display", "seen?u=|u|&s=|s|&c=|country|&z=%7Czed%7C"}}},
      {"mvl-atts", {attachment("a.png"), {{"att-url", "https://c.example/b c"}}}},
      {"k2tb",
       {{{"bid", "b1"}, {"ccp", {{"x", 1}}}, {"delay-dismiss", "YES"}},
        {{"bid", "b1"}},
        ordered_json::object()}}};
  ordered_json report = inspect(changes, {"--screen", "375x812", "--country", "FR"}).report();
  EXPECT_EQ(report["bytes"], payload(changes).dump().size());
  report["bytes"] = 1;
  const ordered_json zed{
      {"code", "action-no-url"},
      {"severity", "warning"},
      {"path", "mvl-tk.dismiss"},
      {"message",
       "This action has no tracking address: what stays unfilled (|zed|) makes it no valid URL; "
       "give it a value in \"params\" or take it out."}};
  EXPECT_EQ(report["findings"][0].dump(), zed.dump());
  EXPECT_EQ(findingsOf(report).size(), 6U);
  report.erase("findings");
  // Compared as text, because the order of the keys counts.
  EXPECT_EQ(report.dump(),
            R"({"file":"-","recognised":true,"bytes":1,"tracking":{"dismiss":{"url":null,)"
            R"("unfilled":["zed"]},"display":{"url":)"
            R"("https:/t.example/seen?u=7&s=375,812&c=FR&z=%7Czed%7C","unfilled":["zed"]}},)"
            R"("attachments":[{"identifier":"a","url":"https://c.example/a.png",)"
            R"("typeByName":"public.png"},{"identifier":"mvl.default.id","url":null,)"
            R"("typeByName":null}],"buttons":[{"bid":"b1","customParams":{"x":1},)"
            R"("delayDismiss":true},{"bid":"b1","customParams":{"x":1},"delayDismiss":true},)"
            R"({"bid":null,"customParams":{},"delayDismiss":false}],)"
            R"("customParams":{"promo":{"n":18446744073709551615}}})");
}

TEST_F(InspectTool, ReportsToPeopleWithoutControlCharacters) {
  const Ended ended = program_.run(
      {"inspect", "-"}, payload({{"\x1B[2J", "\x1B"},
                                 {"mvl-tk", {{"\x1B", "d"}, {"url", "u"}}},
                                 {"mvl-atts", ordered_json::array({attachment("a.p\x1Bg")})},
                                 {"k2tb", {{{"bid", "b\x1B"}}}}})
                            .dump());
  EXPECT_TRUE(ended.out.starts_with("-: recognised, ")) << ended.out;
  for (const char* part : {"  error attachment-bad-url at mvl-atts[0].att-url\n    The address ",
                           "  error tracking-no-url at mvl-tk.display\n", "\\u001B[2J"}) {
    EXPECT_NE(ended.out.find(part), std::string::npos) << part << '\n' << ended.out;
  }
  EXPECT_EQ(ended.out.find('\x1B'), std::string::npos);
}

TEST_F(InspectTool, TellsTheWorstByItsExitStatus) {
  const std::string good = files_.write("good", payload(ordered_json::object()).dump());
  const std::string warning = files_.write(
      "warning", payload({{"mvl-atts", ordered_json::array({attachment("a.PNG")})}}).dump());
  const std::string error = files_.write("error", "{}");
  const std::string broken = files_.write("broken", "{\n\"a\":]");
  const struct {
    Names arguments;
    int status;
  } cases[] = {
      {{good, warning}, 0},
      {{"--strict", good}, 0},
      {{"--strict", good, warning, good}, 3},
      {{error, good}, 3},
      {{broken, error, good}, 1},
      {{error, files_.path() + "/missing"}, 1},
      {{}, 2},
      {{"--jsonl", good}, 2},
      {{"--json", "--jsonl"}, 2},
      {{"--screen", "wide", good}, 2},
  };
  for (auto each : cases) {
    SCOPED_TRACE(::testing::PrintToString(each.arguments));
    each.arguments.insert(each.arguments.begin(), "inspect");
    EXPECT_EQ(program_.run(each.arguments).status, each.status);
  }
  // What cannot be read is passed over.
  const Ended ended = program_.run({"inspect", "--json", broken, good});
  EXPECT_TRUE(ended.err.starts_with("morvelune: " + broken + ":2:5: syntax error")) << ended.err;
  EXPECT_EQ(ended.report()["file"], good);
}

TEST_F(InspectTool, AnswersEachLineInOrder) {
  const std::string good = payload({{"promo", 1}}).dump();
  const std::string tooLong = '{' + std::string(1 << 15, ' ') + '}';
  const std::string longest = '{' + std::string((1 << 15) - 2, ' ') + '}';
  const auto answers =
      inspectLines(lines({good, "", "[1]", tooLong, good, longest}) + "{\"a\":]", 1);
  ASSERT_EQ(answers.size(), 7U);
  for (std::size_t i = 0; i < answers.size(); ++i) EXPECT_EQ(answers[i]["line"], i + 1);
  EXPECT_TRUE(answers[1]["error"].get<std::string>().starts_with("2:1: syntax error"));
  EXPECT_EQ(answers[2].dump(), R"({"file":"-","line":3,"error":"3:1: not a JSON object"})");
  EXPECT_EQ(answers[3]["error"], "4:1: larger than 32768 bytes");
  EXPECT_TRUE(answers[6]["error"].get<std::string>().starts_with("7:6: syntax error"));
  EXPECT_EQ(answers[5]["bytes"], 1 << 15);
  for (const std::size_t i : {0U, 4U}) {
    EXPECT_EQ(answers[i]["customParams"], (ordered_json{{"promo", 1}}));
    EXPECT_EQ(answers[i]["findings"], ordered_json::array());
  }
  EXPECT_EQ(inspectLines("", 0).size(), 0U);
  EXPECT_EQ(inspectLines(good + "\n{}\n", 3).size(), 2U);
}

// The answer comes while the program still waits for more.
TEST_F(InspectTool, AnswersALineBeforeTheNextOneComes) {
  const std::string command =
      "{ echo '{}'; for i in $(seq 500); do [ -s " + files_.path() +
      "/out ] && break; sleep 0.02; done; wc -l <" + files_.path() + "/out >" + files_.path() +
      "/seen; } | " MORVELUNE_PATH " inspect --jsonl >" + files_.path() + "/out";
  EXPECT_NE(std::system(command.c_str()), -1);
  EXPECT_EQ(contentsOf(files_.path() + "/seen"), "1\n");
}

TEST_F(InspectTool, StopsWhenItsAnswersCannotBeWritten) {
  program_.fillStandardOutput();
  EXPECT_EQ(program_.run({"inspect", "--jsonl"}, lines({"{}", "{}"})).status, 1);
}

TEST_F(InspectTool, TellsTheTypesOfFiles) {
  const std::string folder = files_.path() + '/';
  const std::string byContent = files_.write("a.gif", pngBytes());
  const std::string byName = files_.write("b.gif", "short");
  const std::string unknown = files_.write("c.GIF\x1B", unknownBytes());
  ASSERT_EQ(mkfifo((folder + "fifo.png").c_str(), 0600), 0);
  const Ended text = program_.run({"type", byContent, byName, unknown});
  EXPECT_EQ(text.status, 0);
  EXPECT_EQ(text.err, "");
  EXPECT_EQ(text.out, "  " + byContent + "        public.png          content\n  " + byName +
                          "        com.compuserve.gif  extension\n  " + folder +
                          "c.GIF\\u001B  unknown\n");

  const Ended ended = program_.run({"type", "--json", folder + "fifo.png", byContent,
                                    folder + "missing.png", files_.path(), "/dev/zero", unknown});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 4);
  EXPECT_TRUE(ended.err.starts_with("morvelune: " + folder + "fifo.png: not a regular file\n"));
  EXPECT_EQ(ended.report().dump(), R"([{"path":")" + byContent +
                                       R"(","type":"public.png","by":"content"},{"path":")" +
                                       folder + R"(c.GIF\u001b","type":null,"by":null}])");
  EXPECT_EQ(program_.run({"type"}).status, 2);
}

}  // namespace
}  // namespace morvelune::testing
