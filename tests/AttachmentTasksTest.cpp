#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"
#include "support/Media.h"

namespace morvelune::testing {
namespace {

class AttachmentTasksTest : public ::testing::Test {
 protected:
  // Starts the download of one entry with the count raised as for one scheduled task.
  void start(const Dictionary& entry) {
    extension_->setInternalOperationsCount(2);  // one more, so that nothing is delivered
    extension_->downloadTaskForAttachment(entry)->resume();
  }

  std::vector<std::string> attached() {
    std::vector<std::string> attached;
    for (const auto& attachment : extension_->internalAttachments()) {
      attached.push_back(attachment->identifier() + " " + attachment->type().value_or("?") + " " +
                         attachment->url().path());
    }
    return attached;
  }

  InMemoryPlatform memory_;
  std::shared_ptr<ExposedExtension> extension_ = std::make_shared<ExposedExtension>();
};

TEST_F(AttachmentTasksTest, NoEntriesGiveNoTasks) {
  for (const Value& entries : {Value(Array()), Value(), Value("http://h/a.png"),
                               Value(Dictionary{{"att-url", "http://h/a.png"}})}) {
    EXPECT_TRUE(extension_->attachmentsTasksForNotification({{"mvl-atts", entries}}).empty());
  }
  EXPECT_TRUE(extension_->attachmentsTasksForNotification({}).empty());
  EXPECT_EQ(extension_->internalOperationsCount(), 0U);
}

TEST_F(AttachmentTasksTest, OneTaskPerEntryWhateverTheEntryIs) {
  const Dictionary payload{
      {"mvl-atts", Array{Dictionary{{"att-url", "http://h/b"}}, "no dictionary", nullptr,
                         Dictionary{{"att-url", 7}}, Dictionary{{"att-url", "http://h/ a"}},
                         Dictionary{{"att-url", "http://h/a"}}}}};
  const auto tasks = extension_->attachmentsTasksForNotification(payload);
  EXPECT_EQ(tasks.size(), 6U);
  EXPECT_EQ(extension_->internalOperationsCount(), 6U);
  EXPECT_EQ(memory_.network().made(),
            (std::vector<std::string>{"http://h/b", "", "", "", "", "http://h/a"}));
  EXPECT_TRUE(memory_.network().started().empty());
}

TEST_F(AttachmentTasksTest, AFinishedDownloadIsTypedStagedAndAttached) {
  const std::string url = "http://h/a";
  memory_.network().answer(url, {.body = pngBytes()});
  start({{"att-url", url}, {"att-id", "a"}});
  memory_.network().finish(url);
  EXPECT_EQ(attached(), std::vector<std::string>{"a public.png /tmp/download1.tmp-a-UNIQUE1"});
  EXPECT_EQ(memory_.files().paths(), std::vector<std::string>{"/tmp/download1.tmp-a-UNIQUE1"});
  EXPECT_EQ(extension_->internalOperationsCount(), 1U);
  EXPECT_TRUE(memory_.log().empty());
}

TEST_F(AttachmentTasksTest, TheIdentifierIsTakenOrDefaulted) {
  const std::string url = "http://h/a";
  memory_.network().answer(url, {.body = pngBytes()});
  const std::pair<Value, const char*> cases[] = {
      {"", ""}, {"x y", "x y"}, {nullptr, "mvl.default.id"}, {7, "mvl.default.id"}};
  for (const auto& [given, identifier] : cases) {
    start({{"att-url", url}, {"att-id", given}});
    memory_.network().finish(url);
    const auto last = extension_->internalAttachments().back();
    EXPECT_EQ(last->identifier(), identifier);
    EXPECT_NE(last->url().path().find(".tmp-" + std::string(identifier) + "-UNIQUE"),
              std::string::npos)
        << last->url().path();
  }
}

TEST_F(AttachmentTasksTest, EachFailureIsLoggedAndCountedDown) {
  struct Case {
    const char* what;
    Dictionary entry;
    Answer answer;
    std::vector<std::string> log;
  };
  const std::string url = "http://h/a";
  const std::string unknown = "Unknown UTI for attachment with url [http://h/a]";
  const std::string refused = "Failed to create attachment for  url [http://h/a] with error [";
  const Case cases[] = {
      {"download failed", {{"att-url", url}}, {.error = Error{"", -1, "lost"}}, {}},
      {"no address", {}, {}, {}},
      {"not found page",
       {{"att-url", url}},
       {.status = 404, .body = "not found, sorry"},
       {unknown, refused + "Unrecognized attachment file type]"}},
      {"unknown extension",
       {{"att-url", url}},
       {.body = unknownBytes(), .suggestedFilename = "a.JPG"},
       {"Try to find UTI using file extension [JPG]. Result: [(null)]", unknown,
        refused + "Unrecognized attachment file type]"}},
      {"identifier with a slash",
       {{"att-url", url}, {"att-id", "a/b"}},
       {.body = pngBytes()},
       {"Attachment [a/b] tmp file moving from [/tmp/download3.tmp] to "
        "[/tmp/download3.tmp-a/b-UNIQUE3] failded with error [no such file]",
        refused + "Invalid attachment file URL]"}},
  };
  std::size_t logged = 0;
  for (const auto& [what, entry, answer, log] : cases) {
    memory_.network().answer(url, answer);
    start(entry);
    memory_.network().finishAll();
    EXPECT_EQ(extension_->internalOperationsCount(), 1U) << what;
    EXPECT_TRUE(extension_->internalAttachments().empty()) << what;
    auto lines = memory_.log();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(logged));
    EXPECT_EQ(lines, log) << what;
    logged += lines.size();
  }
}

// A file manager whose files cannot be read.
class Unreadable : public InMemoryFileManager {
 public:
  [[nodiscard]] std::optional<Data> contents(const URL&) const override { return std::nullopt; }
};

TEST_F(AttachmentTasksTest, AnUnreadableFileIsTypedByItsName) {
  memory_.services().fileManager = std::make_shared<Unreadable>();
  const std::string url = "http://h/a";
  memory_.network().answer(url, {.body = pngBytes(), .suggestedFilename = "a.gif"});
  start({{"att-url", url}});
  memory_.network().finish(url);
  EXPECT_EQ(memory_.log().at(0),
            "Try to find UTI using file extension [gif]. Result: [com.compuserve.gif]");
}

TEST_F(AttachmentTasksTest, ADownloadKeepsTheExtensionAliveUntilItCompleted) {
  const std::weak_ptr<ExposedExtension> weak = extension_;
  start({{"att-url", "http://h/a"}});
  extension_.reset();
  EXPECT_FALSE(weak.expired());
  memory_.network().finish("http://h/a");
  EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace morvelune::testing
