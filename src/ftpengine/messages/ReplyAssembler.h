#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ftpengine/messages/FTPReply.h"

// Puts the bytes of a control connection, however they are cut, together to replies. A value.
class CReplyAssembler {
public:
    void Append(std::string_view more);

    // The oldest complete reply, with the line end of its final line.
    std::optional<std::string> Take();
    // What has begun and isn't complete; nothing of it is left.
    std::string TakeRest();

    // A line has begun, without its end, that could be the only or the final one: nothing says that others
    // follow. Some servers never end it.
    bool HasLineWithoutEnd() const;
    // The reply that has begun to come is not one to what is sent from here on: it is passed over.
    void PassOverBegun() { isPassedOver = !bytes.empty(); }

    // Of what waits to be complete.
    std::size_t GetSize() const { return bytes.size(); }

private:
    std::string bytes;
    std::size_t seen = 0; // of the bytes, by lines
    CReplyLines lines;
    bool isPassedOver = false;
};
