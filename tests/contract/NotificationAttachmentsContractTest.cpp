#include <gtest/gtest.h>

#include <filesystem>
#include <utility>
#include <vector>

#include "platform/linux/LinuxServices.h"
#include "support/TemporaryDirectory.h"

namespace morvelune {
namespace {

constexpr std::uintmax_t megabyte = 1 << 20;

class NotificationAttachmentsContract
    : public ::testing::TestWithParam<std::shared_ptr<NotificationAttachments> (*)()> {
 protected:
  // The type of the attachment that the file makes, else the error's description.
  std::string outcome(const URL& file, const std::optional<std::string>& typeHint) {
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
  // The same for a new file of this name and size, which holds nothing on disk.
  std::string outcome(const std::string& name, std::uintmax_t size = 1,
                      const std::optional<std::string>& typeHint = std::nullopt) {
    const std::string path = folder_.write(name, "");
    std::filesystem::resize_file(path, size);
    return outcome(URL::fileURL(path), typeHint);
  }

  const std::shared_ptr<NotificationAttachments> attachments_ = GetParam()();
  const testing::TemporaryDirectory folder_;
};

INSTANTIATE_TEST_SUITE_P(Linux, NotificationAttachmentsContract,
                         ::testing::Values(&makeLinuxNotificationAttachments));

constexpr char unrecognized[] = "101 Unrecognized attachment file type";

TEST_P(NotificationAttachmentsContract, TakesTheTypeFromTheExtension) {
  EXPECT_EQ(outcome("a b.x.PnG"), "public.png");
  EXPECT_EQ(outcome("a.m15"), "public.mpeg");
  EXPECT_EQ(outcome("a.wav"), "com.microsoft.waveform-audio");
  for (const char* name : {"a.txt", "a", "a.", ".png", "a.png-id"}) {
    EXPECT_EQ(outcome(name), unrecognized) << name;
  }
}

TEST_P(NotificationAttachmentsContract, AHintBeatsTheExtension) {
  EXPECT_EQ(outcome("a.png", 1, "public.mp3"), "public.mp3");
  for (const char* hint : {"", "png", "image/png", "public.data"}) {
    EXPECT_EQ(outcome("a.png", 1, hint), unrecognized) << hint;
  }
}

TEST_P(NotificationAttachmentsContract, RefusesFilesAboveTheLimitOfTheirFamily) {
  const std::vector<std::pair<std::uintmax_t, std::vector<const char*>>> families = {
      {5,
       {"public.aiff-audio", "com.microsoft.waveform-audio", "public.mp3", "public.mpeg-4-audio"}},
      {10, {"public.jpeg", "com.compuserve.gif", "public.png"}},
      {50, {"public.mpeg", "public.mpeg-2-video", "public.mpeg-4", "public.avi"}}};
  for (const auto& [limit, types] : families) {
    for (const char* type : types) {
      EXPECT_EQ(outcome("a", limit * megabyte, type), type);
      EXPECT_EQ(outcome("a", limit * megabyte + 1, type), "102 Invalid attachment file size")
          << type;
    }
  }
  EXPECT_EQ(outcome("a.txt", 99 * megabyte), unrecognized);  // the type is looked at first
}

TEST_P(NotificationAttachmentsContract, RefusesWhatIsNoFile) {
  const std::string path = folder_.write("a.png", "png");
  std::filesystem::create_directory(folder_.path() + "/folder.png");
  for (const URL& file :
       {URL::fileURL(folder_.path() + "/missing.png"), URL::fileURL(folder_.path() + "/folder.png"),
        URL::fileURL(path + std::string(1, '\0')), *URL::parse("http://" + path), *URL::parse(path),
        *URL::parse("")}) {
    EXPECT_EQ(outcome(file, "public.png"), "100 Invalid attachment file URL")
        << file.absoluteString();
  }
}

}  // namespace
}  // namespace morvelune
