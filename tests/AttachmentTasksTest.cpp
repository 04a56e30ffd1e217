#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"
#include "support/Media.h"

namespace morvelune::testing {
namespace {

using Strings = std::vector<std::string>;

const std::string url = "http://h/a";

class AttachmentTasksTest : public ::testing::Test {
 protected:
  // Downloads one entry with the count raised as for one scheduled task.
  void download(const Dictionary& entry, const Answer& answer) {
    memory_.network().answer(url, answer);
    extension_->setInternalOperationsCount(2);  // one more, so that nothing is delivered
    extension_->downloadTaskForAttachment(entry)->resume();
    memory_.network().finishAll();
    EXPECT_EQ(extension_->internalOperationsCount(), 1U);
  }

  InMemoryPlatform memory_;
  std::shared_ptr<ExposedExtension> extension_ = std::make_shared<ExposedExtension>();
};

TEST_F(AttachmentTasksTest, OneTaskPerEntryWhateverTheEntryIs) {
  for (const Value& none : {Value(Array()), Value(), Value(url), Value(Dictionary{{"0", url}})}) {
    EXPECT_TRUE(extension_->attachmentsTasksForNotification({{"mvl-atts", none}}).empty());
  }
  EXPECT_TRUE(extension_->attachmentsTasksForNotification({}).empty());
  EXPECT_EQ(extension_->internalOperationsCount(), 0U);
  const Array entries{Dictionary{{"att-url", "http://h/b"}},
                      "no dictionary",
                      nullptr,
                      Dictionary{{"att-url", 7}},
                      Dictionary{{"att-url", "http://h/ a"}},
                      Dictionary{{"att-url", url}}};
  EXPECT_EQ(extension_->attachmentsTasksForNotification({{"mvl-atts", entries}}).size(), 6U);
  EXPECT_EQ(extension_->internalOperationsCount(), 6U);
  EXPECT_EQ(memory_.network().made(), (Strings{"http://h/b", "", "", "", "", url}));
  EXPECT_TRUE(memory_.network().started().empty());
}

TEST_F(AttachmentTasksTest, AFinishedDownloadIsTypedStagedAndAttached) {
  const std::pair<Value, std::string> identifiers[] = {
      {"a", "a"}, {"", ""}, {"x y", "x y"}, {nullptr, "mvl.default.id"}, {7, "mvl.default.id"}};
  Strings staged;
  for (const auto& [given, identifier] : identifiers) {
    download({{"att-url", url}, {"att-id", given}}, {.body = pngBytes()});
    const std::string number = std::to_string(staged.size() + 1);
    staged.push_back("/tmp/download" + number + ".tmp-" + identifier + "-UNIQUE" + number);
    const auto attached = extension_->internalAttachments();
    ASSERT_EQ(attached.size(), staged.size());
    EXPECT_EQ(attached.back()->identifier(), identifier);
    EXPECT_EQ(attached.back()->type(), "public.png");
    EXPECT_EQ(attached.back()->url().path(), staged.back());
  }
  EXPECT_EQ(memory_.files().paths(), staged);
  EXPECT_TRUE(memory_.log().empty());
}

TEST_F(AttachmentTasksTest, EachFailureIsLoggedAndCountedDown) {
  const std::string unknown = "Unknown UTI for attachment with url [http://h/a]";
  const std::string refused = "Failed to create attachment for  url [http://h/a] with error [";
  const std::string untyped = refused + "Unrecognized attachment file type]";
  const Answer lost{.error = Error{"", -1, "lost"}};
  const Answer unnamed{.status = 404, .body = "not found, sorry"};
  const Answer named{.body = unknownBytes(), .suggestedFilename = "a.JPG"};
  const Dictionary entry{{"att-url", url}};
  const std::tuple<Dictionary, Answer, Strings> cases[] = {
      {entry, lost, {}},
      {{}, {}, {}},
      {entry, unnamed, {unknown, untyped}},
      {entry,
       named,
       {"Try to find UTI using file extension [JPG]. Result: [(null)]", unknown, untyped}},
      {entry.with("att-id", "a/b"),  // a folder that does not exist
       {.body = pngBytes()},
       {"Attachment [a/b] tmp file moving from [/tmp/download3.tmp] to "
        "[/tmp/download3.tmp-a/b-UNIQUE3] failded with error [no such file]",
        refused + "Invalid attachment file URL]"}},
  };
  Strings logged;
  for (const auto& [given, answer, log] : cases) {
    download(given, answer);
    EXPECT_TRUE(extension_->internalAttachments().empty());
    logged.insert(logged.end(), log.begin(), log.end());
    EXPECT_EQ(memory_.log(), logged);
  }
}

// A file manager whose files cannot be read.
class Unreadable : public InMemoryFileManager {
 public:
  [[nodiscard]] std::optional<Data> contents(const URL&) const override { return std::nullopt; }
};

TEST_F(AttachmentTasksTest, AnUnreadableFileIsTypedByItsName) {
  memory_.services().fileManager = std::make_shared<Unreadable>();
  download({{"att-url", url}}, {.body = pngBytes(), .suggestedFilename = "a.gif"});
  EXPECT_EQ(memory_.log().at(0),
            "Try to find UTI using file extension [gif]. Result: [com.compuserve.gif]");
}

TEST_F(AttachmentTasksTest, ADownloadKeepsTheExtensionAliveUntilItCompleted) {
  const std::weak_ptr<ExposedExtension> weak = extension_;
  extension_->downloadTaskForAttachment({{"att-url", url}})->resume();
  extension_.reset();
  EXPECT_FALSE(weak.expired());
  memory_.network().finishAll();
  EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace morvelune::testing
