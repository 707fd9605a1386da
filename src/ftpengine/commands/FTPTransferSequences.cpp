#include "ftpengine/commands/FTPTransferSequences.h"

#include "common/Text.h"
#include "ftpengine/commands/FTPCommandList.h"
#include "ftpengine/commands/FTPCommandSTOR.h"
#include "ftpengine/commands/PasvResponse.h"

FTPReply CFTPTransferSequence::ExecuteList(std::string_view verb, QString& listing)
{
    CFTPCommandList list(verb, AskForDataAddress(), GetTimeouts());
    const FTPReply reply = Execute(list);
    listing = Widen(list.GetListing());
    return reply;
}

sockaddr_in CFTPTransferSequence::AskForDataAddress()
{
    CFTPCommand pasv("PASV");
    return ParsePasvResponse(Narrow(Execute(pasv).text));
}

FTPReply CFTPCommandSequenceList::Run(QString& listing)
{
    return ExecuteList("LIST", listing);
}

FTPReply CFTPCommandSequenceNlst::Run(QString& listing)
{
    return ExecuteList("NLST", listing);
}

FTPReply CFTPCommandSequenceStor::Run(const QString& localPath, const QString& remoteName,
                                      const std::weak_ptr<CFTPTarget>& progressTarget)
{
    const sockaddr_in address = AskForDataAddress();
    CFTPCommandSTOR stor(Narrow(remoteName),
                         {.localPath = localPath, .progressTarget = progressTarget, .address = address},
                         GetTimeouts());
    return Execute(stor);
}
