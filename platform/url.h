/// @file
/// The URL parser.
#pragma once

#include "koine/export.h"

#include <stdexcept>
#include <string>

/// An absolute `http` or `https` URL: host and port. User information is allowed and ignored here.
class KOINE_EXPORT Url {
public:
    /// What is wrong with a URL and where.
    class KOINE_EXPORT parse_error : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
        ~parse_error() override;
    };

    /// Keeps the text; null counts as empty. Nothing is checked yet.
    explicit Url(const char* text);

    /// Reads host and port out of the text.
    /// @throws Url::parse_error when the text is not such a URL; host and port then stay as they were
    void parse_url();

    /// Host without brackets; empty before `parse_url`.
    const std::string& host() const;

    /// Port, by default that of the scheme; 0 before `parse_url`.
    unsigned int port() const;

private:
    std::string text_;
    std::string host_;
    unsigned int port_ = 0;
};
