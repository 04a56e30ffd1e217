#include "contract/Subject.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {
namespace {

class FileManagerContract : public ::testing::TestWithParam<Subject> {
 protected:
  URL at(const std::string& name) const { return URL::fileURL(folder_.path() + "/" + name); }
  std::optional<Data> read(const URL& file) const { return manager_->contents(file); }

  const std::shared_ptr<FileManager> manager_ = GetParam().files();
  const TemporaryDirectory folder_;
};

INSTANTIATE_CONTRACT(FileManagerContract, files);

const std::string zeroByte("a\0b", 3);
const Data bytes = Data::copyOf(zeroByte);

TEST_P(FileManagerContract, ReadsFilesAndMovesThoseThatAreBeingRead) {
  const std::string name = "a b%é.png";
  folder_.write(name, zeroByte);
  folder_.write("empty", "");
  const std::optional<Data> data = read(at(name));
  EXPECT_EQ(read(at("empty")), Data());
  EXPECT_FALSE(manager_->moveItem(at(name), at(name + "-%41-id")).has_value());
  EXPECT_EQ(read(at(name + "-%41-id")), bytes);
  EXPECT_EQ(data, bytes);
  for (const URL& file : {at(name), at(std::string("empty\0", 6)),
                          *URL::parse("http:" + at("empty").path()), URL::fileURL("")}) {
    EXPECT_EQ(read(file), std::nullopt) << file.absoluteString();
  }
}

TEST_P(FileManagerContract, RefusesMovesAndLeavesBothFilesAlone) {
  folder_.write("a", "source");
  folder_.write("b", "destination");
  const std::tuple<URL, URL, int> cases[] = {
      {at("a"), at("b"), NSFileWriteFileExistsError},
      {at("a"), at("a"), NSFileWriteFileExistsError},
      {at("missing"), at("c"), NSFileNoSuchFileError},
      {at("a"), at("no-folder/c"), NSFileNoSuchFileError},
      {at("a"), at(zeroByte), NSFileWriteInvalidFileNameError},
      {at(zeroByte), at("c"), 0},  // which is not "a"; any code will do
      {URL::fileURL(""), at("c"), 0},
      {*URL::parse("http://h/a"), at("c"), NSFileWriteInvalidFileNameError},
      {at("a"), *URL::parse("c"), NSFileWriteInvalidFileNameError}};
  std::vector<std::pair<Error, int>> errors;
  for (const auto& [from, to, code] : cases) {
    const std::optional<Error> error = manager_->moveItem(from, to);
    ASSERT_TRUE(error.has_value()) << to.absoluteString();
    EXPECT_EQ(read(at("a")), Data::copyOf("source"));
    EXPECT_EQ(read(at("b")), Data::copyOf("destination"));
    errors.emplace_back(*error, code == 0 ? error->code : code);
  }
  NEEDS_RULE("a refused move has an error of the Cocoa domain");
  for (const auto& [error, code] : errors) {
    EXPECT_EQ(error.domain, NSCocoaErrorDomain);
    EXPECT_EQ(error.code, code) << error.localizedDescription;
  }
}

TEST_P(FileManagerContract, MakesUniqueStrings) {
  std::set<std::string> strings;
  for (int i = 0; i < 1000; ++i) strings.insert(manager_->globallyUniqueString());
  EXPECT_EQ(strings.size(), 1000U);
}

}  // namespace
}  // namespace morvelune::testing
