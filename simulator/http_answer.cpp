#include "simulator/http_answer.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace koine::sim {
namespace {

struct Reason {
    unsigned int status;
    std::string_view text;
};

constexpr std::array<Reason, 12> kReasons = {{{200, "OK"},
                                              {204, "No Content"},
                                              {302, "Found"},
                                              {400, "Bad Request"},
                                              {401, "Unauthorized"},
                                              {403, "Forbidden"},
                                              {404, "Not Found"},
                                              {405, "Method Not Allowed"},
                                              {500, "Internal Server Error"},
                                              {501, "Not Implemented"},
                                              {502, "Bad Gateway"},
                                              {503, "Service Unavailable"}}};

std::string_view reasonOf(unsigned int status) {
    const auto found = std::find_if(kReasons.begin(), kReasons.end(),
                                    [status](const Reason& r) { return r.status == status; });
    return found == kReasons.end() ? std::string_view("Other") : found->text;
}

std::string framingLine(const HttpAnswer& answer) {
    if (answer.framing == HttpAnswer::Framing::chunked)
        return "Transfer-Encoding: chunked\r\n";
    if (answer.framing == HttpAnswer::Framing::untilClose)
        return {};
    return "Content-Length: " + std::to_string(answer.announcedLength.value_or(answer.body.size())) + "\r\n";
}

} // namespace

std::string headText(const HttpAnswer& answer) {
    std::string head = answer.statusLine;
    if (head.empty())
        head.append("HTTP/1.1 ")
            .append(std::to_string(answer.status))
            .append(" ")
            .append(reasonOf(answer.status));
    head += "\r\nServer: device\r\nContent-Type: text/plain\r\n";
    for (const std::string& header : answer.headers)
        head.append(header).append("\r\n");
    head += framingLine(answer);
    head += answer.announcesClose ? "Connection: close\r\n\r\n" : "Connection: keep-alive\r\n\r\n";
    return head;
}

std::string chunkText(std::string_view bytes) {
    std::array<char, 20> size{};
    const auto end = std::to_chars(size.data(), size.data() + size.size(), bytes.size(), 16).ptr;
    std::string chunk(size.data(), end);
    return chunk.append("\r\n").append(bytes).append("\r\n");
}

std::string bodyText(const HttpAnswer& answer) {
    if (answer.framing != HttpAnswer::Framing::chunked)
        return answer.body;
    const std::size_t step = std::max<std::size_t>(answer.chunkSize, 1);
    std::string text;
    for (std::string_view rest = answer.body; !rest.empty(); rest.remove_prefix(std::min(step, rest.size())))
        text += chunkText(rest.substr(0, step));
    return text;
}

} // namespace koine::sim
