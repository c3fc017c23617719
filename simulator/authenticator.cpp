#include "simulator/authenticator.h"

#include "simulator/digest.h"
#include "text/numbers.h"
#include "text/words.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <stdexcept>

namespace koine::sim {
namespace {

constexpr std::string_view kRealm = "device";
constexpr std::string_view kBasic = "Basic ";
constexpr std::string_view kDigest = "Digest ";
constexpr std::size_t kNonceBytes = 16;
constexpr std::size_t kMostNonces = 4096;

constexpr DigestKind digestKind(AuthKind kind) {
    return kind == AuthKind::digestSha256 ? DigestKind::sha256 : DigestKind::md5;
}

constexpr std::string_view algorithmName(AuthKind kind) {
    return kind == AuthKind::digestSha256 ? "SHA-256" : "MD5";
}

/// Takes a value in or out of double quotes off a header.
std::string takeValue(std::string_view& text) {
    if (text.empty() || text.front() != '"') {
        const std::size_t end = std::min(text.find_first_of(", \t"), text.size());
        std::string value(text.substr(0, end));
        text.remove_prefix(end);
        return value;
    }
    std::string value;
    text.remove_prefix(1);
    while (!text.empty() && text.front() != '"') {
        if (text.front() == '\\' && text.size() > 1)
            text.remove_prefix(1);
        value += text.front();
        text.remove_prefix(1);
    }
    text.remove_prefix(std::min<std::size_t>(1, text.size()));
    return value;
}

/// "name=value" pairs separated by commas; names in lower case. Stops where it understands nothing more.
std::map<std::string, std::string, std::less<>> parameters(std::string_view text) {
    std::map<std::string, std::string, std::less<>> found;
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(", \t"), text.size()));
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos)
            return found;
        std::string name(text.substr(0, equals));
        for (char& c : name)
            c = lowered(c);
        text.remove_prefix(equals + 1);
        found.insert_or_assign(std::move(name), takeValue(text));
    }
}

std::string_view valueOf(const std::map<std::string, std::string, std::less<>>& pairs,
                         std::string_view name) {
    const auto found = pairs.find(name);
    return found == pairs.end() ? std::string_view() : std::string_view(found->second);
}

/// "nc": eight hexadecimal digits; 0 for anything else.
std::uint64_t nonceCount(std::string_view text) {
    std::uint64_t count = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), count, 16).ptr;
    return text.size() == 8 && end == text.data() + text.size() ? count : 0;
}

bool sameWord(std::string_view one, std::string_view other) {
    return one.size() == other.size() && startsWithIgnoreCase(one, other);
}

} // namespace

AuthKind parseAuthKind(std::string_view word) {
    if (word == "none")
        return AuthKind::none;
    if (word == "basic")
        return AuthKind::basic;
    if (word == "digest")
        return AuthKind::digestMd5;
    if (word == "digest-sha256")
        return AuthKind::digestSha256;
    throw std::invalid_argument("unknown authentication \"" + std::string(word) +
                                "\"; it is one of none, basic, digest, digest-sha256");
}

Authenticator::Authenticator(const Options& options)
    : kind_(options.auth),
      username_(options.username),
      password_(options.password),
      nonceLifetime_(options.nonceLifetimeRequests),
      staleHint_(options.staleHint),
      opaque_(randomText(kNonceBytes)) {}

Verdict Authenticator::check(std::string_view method, std::string_view target,
                             std::string_view authorization) {
    const std::lock_guard lock(mutex_);
    if (kind_ == AuthKind::none)
        return Verdict::granted;
    if (authorization.empty())
        return Verdict::noCredentials;
    if (kind_ == AuthKind::basic) {
        const bool right =
            startsWithIgnoreCase(authorization, kBasic) && basicIsRight(authorization.substr(kBasic.size()));
        return right ? Verdict::granted : Verdict::wrongCredentials;
    }
    if (!startsWithIgnoreCase(authorization, kDigest))
        return Verdict::wrongCredentials;
    const Parameters sent = parameters(authorization.substr(kDigest.size()));
    return digestIsRight(method, target, sent) ? useNonce(sent) : Verdict::wrongCredentials;
}

bool Authenticator::basicIsRight(std::string_view token) const {
    return sameSecret(base64Decoded(skipBlanks(token)), username_ + ':' + password_);
}

bool Authenticator::digestIsRight(std::string_view method, std::string_view target,
                                  const Parameters& sent) const {
    const std::string_view algorithm = valueOf(sent, "algorithm");
    return valueOf(sent, "username") == username_ && valueOf(sent, "realm") == kRealm &&
           valueOf(sent, "opaque") == opaque_ && valueOf(sent, "uri") == target &&
           valueOf(sent, "qop") == "auth" && !valueOf(sent, "cnonce").empty() &&
           nonceCount(valueOf(sent, "nc")) != 0 &&
           (algorithm.empty() ? kind_ == AuthKind::digestMd5 : sameWord(algorithm, algorithmName(kind_))) &&
           sameSecret(valueOf(sent, "response"), digestResponse(method, sent));
}

std::string Authenticator::digestResponse(std::string_view method, const Parameters& sent) const {
    const DigestKind kind = digestKind(kind_);
    const auto joined = [](std::initializer_list<std::string_view> parts) {
        std::string text;
        for (const std::string_view part : parts)
            text.append(text.empty() ? "" : ":").append(part);
        return text;
    };
    const std::string user = digestOf(kind, username_ + ':' + std::string(kRealm) + ':' + password_);
    const std::string request = digestOf(kind, joined({method, valueOf(sent, "uri")}));
    return digestOf(kind, joined({user, valueOf(sent, "nonce"), valueOf(sent, "nc"), valueOf(sent, "cnonce"),
                                  valueOf(sent, "qop"), request}));
}

/// The answer was right; whether it may be given with this nonce and this count is another question.
Verdict Authenticator::useNonce(const Parameters& sent) {
    const auto found = nonces_.find(valueOf(sent, "nonce"));
    if (found == nonces_.end() || found->second.expired)
        return Verdict::staleNonce;
    Nonce& nonce = found->second;
    if (nonceLifetime_ != 0 && nonce.uses >= nonceLifetime_)
        return Verdict::staleNonce;
    const std::uint64_t count = nonceCount(valueOf(sent, "nc"));
    if (count <= nonce.lastCount)
        return Verdict::wrongCredentials; // a replay
    nonce.lastCount = count;
    ++nonce.uses;
    return Verdict::granted;
}

std::string Authenticator::newNonce() {
    std::string nonce = randomText(kNonceBytes);
    nonces_.try_emplace(nonce);
    nonceOrder_.push_back(nonce);
    if (nonceOrder_.size() > kMostNonces) {
        nonces_.erase(nonceOrder_.front());
        nonceOrder_.pop_front();
    }
    return nonce;
}

std::string Authenticator::challenge(Verdict verdict) {
    const std::lock_guard lock(mutex_);
    const std::string realm = "realm=\"" + std::string(kRealm) + '"';
    if (kind_ == AuthKind::none || kind_ == AuthKind::basic)
        return std::string(kBasic) + realm;
    const bool stale = verdict == Verdict::staleNonce && staleHint_;
    return std::string(kDigest) + realm + ", qop=\"auth\", algorithm=" + std::string(algorithmName(kind_)) +
           ", nonce=\"" + newNonce() + "\", opaque=\"" + opaque_ + '"' + (stale ? ", stale=true" : "");
}

void Authenticator::setKind(AuthKind kind) {
    const std::lock_guard lock(mutex_);
    kind_ = kind;
}

void Authenticator::setCredentials(std::string username, std::string password) {
    const std::lock_guard lock(mutex_);
    username_ = std::move(username);
    password_ = std::move(password);
}

void Authenticator::expireNonces() {
    const std::lock_guard lock(mutex_);
    for (auto& [text, nonce] : nonces_)
        nonce.expired = true;
}

} // namespace koine::sim
