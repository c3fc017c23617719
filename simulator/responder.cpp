#include "simulator/responder.h"

#include "text/words.h"

namespace koine::sim {
namespace {

constexpr std::string_view kFormType = "application/x-www-form-urlencoded";

bool isKnownMethod(std::string_view method) { return method == "GET" || method == "POST"; }

std::string_view formOf(const HttpRequest& request) {
    const bool isForm = request.method == "POST" && startsWithIgnoreCase(request.contentType, kFormType);
    return isForm ? std::string_view(request.body) : std::string_view();
}

} // namespace

Responder::Responder(const Options& options, Dialect dialect, Authenticator& authenticator, FaultList& faults,
                     Journal& journal)
    : cookie_(options.cookie),
      textRefusal_(options.textRefusal),
      onRequest_(options.onRequest),
      dialect_(std::move(dialect)),
      authenticator_(authenticator),
      faults_(faults),
      journal_(journal) {}

Reply Responder::reply(const HttpRequest& request) {
    const RequestTarget target = parseTarget(request.target, formOf(request));
    RequestFaults faults(faults_, target.line);
    Reply reply = answered(request, target, faults);
    LoggedRequest logged{request.method, target.line, reply.silent ? 0 : reply.status, request.connection,
                         faults.taken()};
    if (onRequest_)
        onRequest_(logged);
    journal_.log(std::move(logged), target.cgi);
    return reply;
}

Reply Responder::answered(const HttpRequest& request, const RequestTarget& target, RequestFaults& faults) {
    const bool storm = faults.take(FaultKind::unauthorizedStorm).has_value();
    const Verdict verdict = storm
                                ? Verdict::staleNonce
                                : authenticator_.check(request.method, request.target, request.authorization);
    const bool told = textRefusal_ && verdict == Verdict::wrongCredentials;
    if (verdict == Verdict::granted || told) {
        HttpAnswer answer = told ? HttpAnswer() : carriedOut(request, target, faults);
        if (told)
            answer.body = kAuthenticationError;
        answer.announcesClose = !request.keepAlive;
        addCookie(request, answer);
        return spoiledReply(std::move(answer), faults);
    }
    HttpAnswer refusal = unauthorized(verdict);
    refusal.announcesClose = !request.keepAlive;
    return pacedReply(std::move(refusal), faults);
}

HttpAnswer Responder::carriedOut(const HttpRequest& request, const RequestTarget& target,
                                 RequestFaults& faults) {
    if (auto instead = answerInstead(faults))
        return std::move(*instead);
    HttpAnswer answer;
    if (!isKnownMethod(request.method)) {
        answer.status = 405;
        answer.body = "only GET and POST\n";
        return answer;
    }
    CgiAnswer cgi = dialect_.answer(target);
    answer.status = cgi.httpStatus;
    answer.body = std::move(cgi.text);
    return answer;
}

HttpAnswer Responder::unauthorized(Verdict verdict) {
    HttpAnswer answer;
    answer.status = 401;
    answer.headers.push_back("WWW-Authenticate: " + authenticator_.challenge(verdict));
    answer.body = "credentials wanted\n";
    return answer;
}

void Responder::addCookie(const HttpRequest& request, HttpAnswer& answer) {
    if (cookie_.empty())
        return;
    if (contains(request.cookie, cookie_))
        journal_.countCookie();
    else
        answer.headers.push_back("Set-Cookie: " + cookie_ + "; Path=/");
}

Reply Responder::replyToGarbage() {
    HttpAnswer answer;
    answer.status = 400;
    answer.body = "this is no request\n";
    answer.announcesClose = true;
    return plainReply(answer);
}

} // namespace koine::sim
