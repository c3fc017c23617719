#include "platform/url.h"

#include "default_platform/url_parts.h"
#include "text/owned_text.h"

// Here, so that every library sees one and the same type.
Url::parse_error::~parse_error() = default;

Url::Url(const char* text) : text_(koine::orEmpty(text)) {}

void Url::parse_url() {
    koine::platform::UrlParts parts = koine::platform::splitUrl(text_);
    host_.swap(parts.host);
    port_ = parts.port;
}

const std::string& Url::host() const { return host_; }

unsigned int Url::port() const { return port_; }
