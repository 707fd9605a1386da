#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Values in replies.

// The path in a reply to PWD (RFC 959, appendix II): 257 "/a ""b""" is current gives /a "b". Throws an
// FTPReply, the reply itself with the code 550, if there is none.
std::string ReadQuotedPath(std::string_view reply);

// The number in a reply to SIZE: "213 12" gives 12. Nothing if there is none.
std::optional<int64_t> ReadSize(std::string_view reply);
