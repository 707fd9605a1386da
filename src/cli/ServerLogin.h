#pragma once

#include <optional>

#include <QStringList>

#include "ftpengine/destinations/FTPDestination.h"

struct CommandArguments;
struct ServerUrl;

// The password for an address: its own; else that of the variable VISTORAMA_FTP_PASSWORD, even if empty;
// else, if the address names a user and standard input is a terminal, what a person types there without echo;
// else "". For SFTP it may be the passphrase of a key file as well. Nothing if the prompt was interrupted.
// Throws CWrongUse for a password with a line break.
std::optional<QString> FindPassword(const ServerUrl& url);

// The server that an address names, with the password found for it. Nothing if the question for the password
// was interrupted. Throws CWrongUse.
std::optional<FTPDestinationConnection> FindConnection(const QString& address);

// The options of commands that go to a server, each with a value: a key file to log in with, and the identity
// that the server has to have.
const QStringList& GetServerOptions();
// Takes them over. Throws CWrongUse for a value that is none, or an option that the protocol has no use for.
void ApplyServerOptions(const CommandArguments& parsed, FTPDestinationConnection& connection);
