#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "platform/linux/LinuxServices.h"
#include "support/InMemoryPlatform.h"
#include "support/TemporaryDirectory.h"

namespace morvelune {
namespace {

// A file manager, a folder, and a way to put files there.
struct Files {
  std::shared_ptr<FileManager> manager;
  std::string folder;
  std::function<void(const std::string& name, const std::string& bytes)> write;
};

Files linuxFiles() {
  auto folder = std::make_shared<testing::TemporaryDirectory>();
  return {makeLinuxFileManager(), folder->path(),
          [folder](const auto& name, const auto& bytes) { folder->write(name, bytes); }};
}

Files inMemoryFiles() {
  auto files = std::make_shared<testing::InMemoryFileManager>();
  return {files, "/memory",
          [files](const auto& name, const auto& bytes) { files->write("/memory/" + name, bytes); }};
}

class FileManagerContract : public ::testing::TestWithParam<Files (*)()> {
 protected:
  URL at(const std::string& name) const { return URL::fileURL(files_.folder + "/" + name); }
  std::optional<Data> read(const URL& file) const { return files_.manager->contents(file); }

  const Files files_ = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(All, FileManagerContract, ::testing::Values(&linuxFiles, &inMemoryFiles));

const std::string zeroByte("a\0b", 3);
const Data bytes = Data::copyOf(zeroByte);

TEST_P(FileManagerContract, ReadsFiles) {
  files_.write("a", zeroByte);
  files_.write("empty", "");
  EXPECT_EQ(read(at("a")), bytes);
  EXPECT_EQ(read(at("empty")), Data());
  for (const URL& file : {at("missing"), at(zeroByte), *URL::parse("http:" + at("a").path())}) {
    EXPECT_EQ(read(file), std::nullopt) << file.absoluteString();
  }
}

TEST_P(FileManagerContract, MovesFilesThatAreBeingRead) {
  files_.write("a b%é.png", zeroByte);
  const std::optional<Data> data = read(at("a b%é.png"));
  EXPECT_FALSE(files_.manager->moveItem(at("a b%é.png"), at("a b%é.png-%41-id")).has_value());
  EXPECT_EQ(read(at("a b%é.png")), std::nullopt);
  EXPECT_EQ(read(at("a b%é.png-%41-id")), bytes);
  EXPECT_EQ(data, bytes);
}

TEST_P(FileManagerContract, RefusesMovesAndLeavesBothFilesAlone) {
  files_.write("a", "source");
  files_.write("b", "destination");
  const std::tuple<URL, URL, int> cases[] = {
      {at("a"), at("b"), NSFileWriteFileExistsError},
      {at("a"), at("a"), NSFileWriteFileExistsError},
      {at("missing"), at("c"), NSFileNoSuchFileError},
      {at("a"), at("no-folder/c"), NSFileNoSuchFileError},
      {at("a"), at(zeroByte), NSFileWriteInvalidFileNameError},
      {at(zeroByte), at("c"), 0},  // which is not "a"; any code will do
      {*URL::parse("http://h/a"), at("c"), NSFileWriteInvalidFileNameError},
      {at("a"), *URL::parse("c"), NSFileWriteInvalidFileNameError}};
  for (const auto& [from, to, code] : cases) {
    const std::optional<Error> error = files_.manager->moveItem(from, to);
    ASSERT_TRUE(error.has_value()) << to.absoluteString();
    EXPECT_EQ(error->domain, NSCocoaErrorDomain);
    EXPECT_EQ(error->code, code == 0 ? error->code : code) << from.absoluteString();
    EXPECT_EQ(read(at("a")), Data::copyOf("source"));
    EXPECT_EQ(read(at("b")), Data::copyOf("destination"));
  }
}

TEST_P(FileManagerContract, MakesUniqueStrings) {
  std::set<std::string> strings;
  for (int i = 0; i < 1000; ++i) strings.insert(files_.manager->globallyUniqueString());
  EXPECT_EQ(strings.size(), 1000U);
}

}  // namespace
}  // namespace morvelune
