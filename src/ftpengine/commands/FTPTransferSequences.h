#pragma once

#include <netinet/in.h>
#include <string_view>

#include "ftpengine/FTPMessages.h"
#include "ftpengine/commands/FTPCommandSequence.h"

// The sequences with a data connection, in passive mode; each begins with a PASV of its own. For what Run
// throws see CFTPCommandSequence; also an int, 11004, for an unreadable reply to PASV.

class CFTPTransferSequence : public CFTPCommandSequence {
public:
    using CFTPCommandSequence::CFTPCommandSequence;

protected:
    sockaddr_in AskForDataAddress();
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
