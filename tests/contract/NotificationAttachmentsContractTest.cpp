#include <filesystem>

#include "contract/Subject.h"
#include "support/TemporaryDirectory.h"
#include "support/TestData.h"

namespace morvelune::testing {
namespace {

class NotificationAttachmentsContract : public ::testing::TestWithParam<Subject> {
 protected:
  // The type of the attachment that the file makes, else the error's code and description.
  std::string outcome(const URL& file, const std::optional<std::string>& typeHint) const {
    const auto result = attachments_->attachment("id", file, typeHint);
    if (const auto* error = std::get_if<Error>(&result)) {
      EXPECT_EQ(error->domain, UNErrorDomain);
      return std::to_string(error->code) + " " + error->localizedDescription;
    }
    const auto attachment = std::get<std::shared_ptr<const UNNotificationAttachment>>(result);
    EXPECT_EQ(attachment->identifier(), "id");
    EXPECT_EQ(attachment->url(), file);
    return attachment->type().value_or("none");
  }

  const std::shared_ptr<NotificationAttachments> attachments_ = GetParam().attachments();
  const TemporaryDirectory folder_;
};

INSTANTIATE_CONTRACT(NotificationAttachmentsContract, attachments);

TEST_P(NotificationAttachmentsContract, TakesAFileByItsTypeAndSize) {
  const Keys keys{"name", "hint", "bytes", "outcome"};
  for (const auto& each : casesOf(testData("data/attachments.json"), keys)) {
    const std::string path = folder_.write(each.at("name"), "");
    std::filesystem::resize_file(path, each.value("bytes", 1U));  // which holds nothing on disk
    const auto hint = each.contains("hint") ? std::optional(each["hint"]) : std::nullopt;
    EXPECT_EQ(outcome(URL::fileURL(path), hint), each.at("outcome").get<std::string>()) << each;
  }
}

TEST_P(NotificationAttachmentsContract, RefusesWhatIsNoFile) {
  const std::string path = folder_.write("a.png", "png");
  std::filesystem::create_directory(folder_.path() + "/folder.png");
  for (const URL& file :
       {URL::fileURL(folder_.path() + "/missing.png"), URL::fileURL(folder_.path() + "/folder.png"),
        URL::fileURL(path + std::string(1, '\0')), *URL::parse("http://" + path),
        *URL::parse(path)}) {
    EXPECT_EQ(outcome(file, "public.png"), "100 Invalid attachment file URL")
        << file.absoluteString();
  }
}

}  // namespace
}  // namespace morvelune::testing
