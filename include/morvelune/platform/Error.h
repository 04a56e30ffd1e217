// Error: why a platform service could not do its work.
#pragma once

#include <string>

namespace morvelune {

struct Error {
  std::string domain;                // whose codes these are, such as "NSURLErrorDomain"
  int code = 0;                      // in that domain
  std::string localizedDescription;  // one sentence for people
};

// The platform's error domains and the codes in use.
inline constexpr char NSURLErrorDomain[] = "NSURLErrorDomain";
inline constexpr char NSCocoaErrorDomain[] = "NSCocoaErrorDomain";
inline constexpr char UNErrorDomain[] = "UNErrorDomain";

// NSURLErrorDomain.
inline constexpr int NSURLErrorUnknown = -1;
inline constexpr int NSURLErrorCancelled = -999;
inline constexpr int NSURLErrorTimedOut = -1001;
inline constexpr int NSURLErrorUnsupportedURL = -1002;
inline constexpr int NSURLErrorCannotFindHost = -1003;
inline constexpr int NSURLErrorCannotConnectToHost = -1004;
inline constexpr int NSURLErrorNetworkConnectionLost = -1005;
inline constexpr int NSURLErrorHTTPTooManyRedirects = -1007;
inline constexpr int NSURLErrorResourceUnavailable = -1008;
inline constexpr int NSURLErrorBadServerResponse = -1011;
inline constexpr int NSURLErrorDataLengthExceedsMaximum = -1103;
inline constexpr int NSURLErrorSecureConnectionFailed = -1200;
inline constexpr int NSURLErrorServerCertificateUntrusted = -1202;
inline constexpr int NSURLErrorCannotCreateFile = -3000;
inline constexpr int NSURLErrorCannotWriteToFile = -3003;

// NSCocoaErrorDomain.
inline constexpr int NSFileNoSuchFileError = 4;
inline constexpr int NSFileWriteUnknownError = 512;
inline constexpr int NSFileWriteInvalidFileNameError = 514;
inline constexpr int NSFileWriteFileExistsError = 516;

// UNErrorDomain.
inline constexpr int UNErrorCodeAttachmentInvalidURL = 100;
inline constexpr int UNErrorCodeAttachmentUnrecognizedType = 101;
inline constexpr int UNErrorCodeAttachmentInvalidFileSize = 102;

}  // namespace morvelune
