#pragma once

#include <string_view>

#include "ftpengine/commands/DataTransfer.h"
#include "ftpengine/commands/FTPCommandSequence.h"
#include "ftpengine/messages/FTPMessages.h"

// All sequences. Paths here have "\" between their names, whatever the server
// uses, unless said otherwise; empty names in them are passed over. For what Run throws see
// CFTPCommandSequence.

// Waits for the greeting.
class CFTPCommandSequenceWelcome final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run();
};

// Asks for TLS (RFC 4217). After a success the next thing to be said is that of TLS.
class CFTPCommandSequenceAuthTls final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run();
};

// Has the data connections protected as well.
class CFTPCommandSequenceProtectData final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run();
};

// Logs in, after the greeting. A password is sent in any case, also when the server asks for none; it
// is turned into a one-time password if the server asks for that. The result is the reply to it.
class CFTPCommandSequenceLogin final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run(const QString& user, const CSecretText& password);
};

class CFTPCommandSequenceQuit final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run();
};

// path: as the server wants it, sent in one piece.
class CFTPCommandSequenceChangeDir final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run(const QString& path);
};

// Enters a path, name by name, and makes what is missing. The result is that of the last step; 200 for an
// empty path.
class CFTPCommandSequenceOpenDir final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run(const QString& path);
};

// Makes a name. A name that has just been made is not entered, so the second name of a path is made beside
// the first, not in it: meant so, as a person gives one name.
class CFTPCommandSequenceCreateDir final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run(const QString& path);

private:
    FTPReply MakeOrEnter(const std::string& name);
};

class CFTPCommandSequenceRenameDir final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run(const QString& oldName, const QString& newName);
};

// Binary.
class CFTPCommandSequenceTypeI final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run();
};

// Text.
class CFTPCommandSequenceTypeA final : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;
    FTPReply Run();
};

// Base of the sequences with a data connection, in passive mode; each begins with a PASV of its own, or over
// IPv6, which PASV doesn't know, with an EPSV. Run also throws an int, 11004, for an unreadable reply to it.
class CFTPTransferSequence : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;

protected:
    // At the control connection's peer, whatever address the server names: behind a router it names one that
    // is good there only, and a hostile one would name another's.
    DataEndpoint AskForDataEndpoint();
    DataEndpoint AskForDataEndpointExtended();
    FTPReply ExecuteList(std::string_view verb, QString& listing);
};

class CFTPCommandSequenceList final : public CFTPTransferSequence {
public:
    using CFTPTransferSequence::CFTPTransferSequence;
    FTPReply Run(QString& listing);
};

// Names alone.
class CFTPCommandSequenceNlst final : public CFTPTransferSequence {
public:
    using CFTPTransferSequence::CFTPTransferSequence;
    FTPReply Run(QString& listing);
};

class CFTPCommandSequenceStor final : public CFTPTransferSequence {
public:
    using CFTPTransferSequence::CFTPTransferSequence;
    // progressTarget: gets FTP_UPLOAD_PROGRESS; may be none.
    FTPReply Run(const QString& localPath, const QString& remoteName,
                 const std::weak_ptr<CFTPTarget>& progressTarget);
};
