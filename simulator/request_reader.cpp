#include "simulator/request_reader.h"

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

namespace koine::sim {
namespace {

namespace http = boost::beast::http;

// A request line of a megabyte is still read, so that a test can see what becomes of it.
constexpr std::uint32_t kLongestHead = 2U << 20U;
constexpr std::uint64_t kLongestBody = 16U << 20U;

std::string text(boost::beast::string_view view) { return {view.data(), view.size()}; }

} // namespace

struct RequestReader::Parser {
    using Request = http::request_parser<http::string_body>;

    std::optional<Request> request;
    std::string pending;
    bool broken = false;

    void begin() {
        request.emplace();
        request->eager(true);
        request->header_limit(kLongestHead);
        request->body_limit(kLongestBody);
    }

    /// Gives the parser what is there, until it is done or wants more.
    void advance() {
        while (!pending.empty() && !request->is_done() && !broken) {
            boost::system::error_code failure;
            const std::size_t used = request->put(boost::asio::buffer(pending), failure);
            pending.erase(0, used);
            if (failure == http::error::need_more)
                break;
            broken = static_cast<bool>(failure);
            if (used == 0)
                break;
        }
    }

    HttpRequest take() {
        auto message = request->release();
        HttpRequest taken;
        taken.method = text(message.method_string());
        taken.target = text(message.target());
        taken.authorization = text(message[http::field::authorization]);
        taken.cookie = text(message[http::field::cookie]);
        taken.contentType = text(message[http::field::content_type]);
        taken.keepAlive = message.keep_alive();
        taken.body = std::move(message.body());
        return taken;
    }
};

RequestReader::RequestReader() : parser_(std::make_unique<Parser>()) { parser_->begin(); }
RequestReader::~RequestReader() = default;

void RequestReader::feed(std::string_view bytes) { parser_->pending.append(bytes); }

std::optional<HttpRequest> RequestReader::next() {
    parser_->advance();
    if (parser_->broken || !parser_->request->is_done())
        return std::nullopt;
    HttpRequest request = parser_->take();
    parser_->begin();
    return request;
}

bool RequestReader::isBroken() const noexcept { return parser_->broken; }

} // namespace koine::sim
