#pragma once

#include <cstdint>
#include <netinet/in.h>
#include <string_view>

// The address in the reply to PASV (RFC 959, 4.1.2), taken as it stands, whatever host it is of:
// "227 Entering Passive Mode (192,168,1,2,19,137)." gives 192.168.1.2, port 5001. Throws an int, 11004, if
// there are no six numbers of one byte between the last brackets.
sockaddr_in ParsePasvResponse(std::string_view reply);

// The port in the reply to EPSV (RFC 2428, 3): "229 Entering Extended Passive Mode (|||6446|)" gives 6446;
// another character may stand for "|". Throws an int, 11004, if there is none.
uint16_t ParseEpsvResponse(std::string_view reply);
