#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleSystemLog : public SystemLog {
 public:
  void writeLine(const std::string& line) override { NSLog(@"%@", toNative(line)); }
};

}  // namespace

std::shared_ptr<SystemLog> makeSystemLog() {
  return std::make_shared<AppleSystemLog>();
}

}  // namespace morvelune::apple
