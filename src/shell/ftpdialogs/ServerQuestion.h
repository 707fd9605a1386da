#pragma once

#include <optional>

#include <QString>

#include "ftpengine/destinations/FTPDestination.h"
#include "ftpengine/session/ServerIdentity.h"

class QWidget;

// What a person has to decide before a connection to a server can be made. A value.
struct ServerQuestion {
    int status = 0; // UntrustedServer, TlsNotOffered or TlsDemanded (EngineStatus.h)
    std::optional<ServerIdentity> identity;
    QString trustFolder; // SessionSetting.h; the identity is kept there if it is trusted
};

// Whether a status is a question for a person, not a failure.
bool IsServerQuestion(int status);

// Asks, and returns whether the connection is worth another try: the identity is remembered then, or the
// destination has the protocol that was agreed to, which its owner stores. Nothing secret has been sent to
// the server before the answer.
bool AskAboutServer(const ServerQuestion& question, FTPDestinationConnection& destination, QWidget* parent);
