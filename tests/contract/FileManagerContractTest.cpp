#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>

#include "platform/linux/LinuxServices.h"
#include "support/InMemoryPlatform.h"
#include "support/TemporaryDirectory.h"

namespace morvelune {
namespace {

// A file manager, a folder for the test, and a way to put files there.
struct Files {
  std::shared_ptr<FileManager> manager;
  std::string folder;
  std::function<std::string(const std::string& name, const std::string& bytes)> write;
  std::function<void(const std::string& path)> remove;
};

Files linuxFiles() {
  auto folder = std::make_shared<testing::TemporaryDirectory>();
  return {makeLinuxFileManager(), folder->path(),
          [folder](const auto& name, const auto& bytes) { return folder->write(name, bytes); },
          [](const auto& path) { std::filesystem::remove(path); }};
}

Files inMemoryFiles() {
  auto files = std::make_shared<testing::InMemoryFileManager>();
  const auto write = [files](const std::string& name, const std::string& bytes) {
    files->write("/memory/" + name, bytes);
    return "/memory/" + name;
  };
  return {files, "/memory", write, [files](const auto& path) { files->remove(path); }};
}

class FileManagerContract : public ::testing::TestWithParam<Files (*)()> {
 protected:
  [[nodiscard]] std::optional<std::string> read(const URL& file) const {
    const std::optional<Data> data = files_.manager->contents(file);
    if (!data) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data->bytes().data()), data->size());
  }
  [[nodiscard]] URL at(const std::string& name) const {
    return URL::fileURL(files_.folder + "/" + name);
  }

  const Files files_ = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(Linux, FileManagerContract, ::testing::Values(&linuxFiles));
INSTANTIATE_TEST_SUITE_P(InMemory, FileManagerContract, ::testing::Values(&inMemoryFiles));

const std::string zeroByte("a\0b", 3);

TEST_P(FileManagerContract, ReadsFiles) {
  const std::string path = files_.write("a", zeroByte);
  files_.write("empty", "");
  EXPECT_EQ(read(at("a")), zeroByte);
  EXPECT_EQ(read(at("empty")), "");
  EXPECT_EQ(read(at("missing")), std::nullopt);
  EXPECT_EQ(read(at("a" + std::string(1, '\0'))), std::nullopt);  // not cut to "a"
  EXPECT_EQ(read(*URL::parse("http://" + path)), std::nullopt);
  EXPECT_EQ(read(*URL::parse("")), std::nullopt);
}

TEST_P(FileManagerContract, ContentsOutliveTheFile) {
  const std::string path = files_.write("a", "bytes");
  const std::optional<Data> data = files_.manager->contents(at("a"));
  files_.remove(path);
  EXPECT_EQ(data, Data::copyOf("bytes"));
}

TEST_P(FileManagerContract, MovesFiles) {
  files_.write("a b%é.png", "bytes");
  EXPECT_FALSE(files_.manager->moveItem(at("a b%é.png"), at("a b%é.png-%41-id")).has_value());
  EXPECT_EQ(read(at("a b%é.png")), std::nullopt);
  EXPECT_EQ(read(at("a b%é.png-%41-id")), "bytes");
}

TEST_P(FileManagerContract, RefusesMovesAndLeavesBothFilesAlone) {
  files_.write("a", "source");
  files_.write("b", "destination");
  const struct {
    URL from;
    URL to;
    std::optional<int> code = {};  // none where any will do
  } cases[] = {
      {at("a"), at("b"), NSFileWriteFileExistsError},
      {at("a"), at("a"), NSFileWriteFileExistsError},
      {at("missing"), at("c"), NSFileNoSuchFileError},
      {at("a"), at("no-folder/c"), NSFileNoSuchFileError},
      {at("a"), at(zeroByte), NSFileWriteInvalidFileNameError},
      {at(zeroByte), at("c")},  // which is not "a"
      {*URL::parse("http://h/a"), at("c"), NSFileWriteInvalidFileNameError},
      {at("a"), *URL::parse("c"), NSFileWriteInvalidFileNameError},
  };
  for (const auto& c : cases) {
    const std::optional<Error> error = files_.manager->moveItem(c.from, c.to);
    ASSERT_TRUE(error.has_value()) << c.to.absoluteString();
    EXPECT_EQ(error->domain, NSCocoaErrorDomain);
    EXPECT_EQ(error->code, c.code.value_or(error->code))
        << c.from.absoluteString() << " " << c.to.absoluteString();
    EXPECT_EQ(read(at("a")), "source");
    EXPECT_EQ(read(at("b")), "destination");
  }
}

TEST_P(FileManagerContract, MakesUniqueStrings) {
  std::set<std::string> strings;
  for (int i = 0; i < 1000; ++i) strings.insert(files_.manager->globallyUniqueString());
  EXPECT_EQ(strings.size(), 1000U);
}

}  // namespace
}  // namespace morvelune
