// origin: a media and tracking server on the loopback interface, for the demonstration.
//
//   origin MEDIA_FOLDER
//
// Prints its address first, then the request line of each tracking request as it arrives, until a
// signal ends it.
#include <httplib.h>

#include <iostream>

int main(int argc, char** argv) {
  httplib::Server server;
  if (argc != 2 || !server.set_mount_point("/media", argv[1])) {
    std::cerr << "usage: origin MEDIA_FOLDER\n";
    return 2;
  }
  server.Get("/track/.*", [](const httplib::Request& request, httplib::Response& response) {
    std::cout << request.method + ' ' + request.target + ' ' + request.version + '\n' << std::flush;
    response.status = 204;
  });
  const int port = server.bind_to_any_port("127.0.0.1");
  if (port < 0) {
    std::cerr << "origin: no port of the loopback interface is free\n";
    return 1;
  }
  std::cout << "http://127.0.0.1:" << port << std::endl;
  return server.listen_after_bind() ? 0 : 1;
}
