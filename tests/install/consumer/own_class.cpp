// A device class from outside: its steps are found through the virtual table of the installed library, its
// type and the library's are one type, and exceptions pass.

#include "koine/BaseRequest.h"

#include <boost/make_shared.hpp>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <typeinfo>

namespace {

class PaperCamera final : public BaseRequest {
public:
    const char* deviceClass() override { return "paper"; }
    int probe(unsigned int) override { return koine::kOk; }
    int handleParameter(unsigned int, char* parameters, char** answer) override {
        return handleParameter_1(parameters, answer);
    }
    int syncProfileToken(unsigned int uid) override { return syncProfileToken_1(uid); }
    int buildStreamUri(unsigned int, const char*, unsigned int, const char*, const char*, int, int,
                       char** uri) override {
        *uri = ::strdup("rtsp://paper/");
        return koine::kOk;
    }
    int requestCgi(unsigned int, char* url, char** answer, _REQCGI_METHOD_DEF,
                   _REQCGI_CONNECTION_DEF) override {
        asked += std::string(url) + "\n";
        *answer = ::strdup("0\nOK\nProduct-Name=Paper\n");
        return koine::kOk;
    }

    std::string asked;
};

} // namespace

int main() {
    const auto camera = boost::make_shared<PaperCamera>();
    const boost::shared_ptr<IBaseRequest> host = camera;
    camera->set_server_address("127.0.0.1");
    std::string line = "Login.cgi", none;
    char* answer = nullptr;
    const int result = host->requestHttpStr(1, line.data(), none.data(), none.data(), &answer);
    const bool told = result == koine::kOk && std::strstr(answer, "Product-Name=Paper") != nullptr;
    std::cout << result << " " << answer << "asked: " << camera->asked;
    host->freeData(answer);

    const bool sameType = dynamic_cast<StreamIDCenter*>(static_cast<BaseRequest*>(camera.get())) != nullptr &&
                          typeid(*camera->get_streamid_client(1)) == typeid(StreamIDClient);
    return told && sameType && camera->asked == "http://127.0.0.1:80/Login.cgi\n" ? 0 : 1;
}
