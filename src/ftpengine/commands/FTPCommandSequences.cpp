#include "ftpengine/commands/FTPCommandSequences.h"

#include <QStringList>

#include "common/Text.h"
#include "ftpengine/commands/FTPCommandList.h"
#include "ftpengine/commands/FTPCommandSTOR.h"
#include "ftpengine/commands/PasvResponse.h"
#include "ftpengine/secrets/OneTimePassword.h"

namespace {

QStringList NamesOf(const QString& path)
{
    return path.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
}

bool IsParent(const QString& name)
{
    return name == QLatin1String("..");
}

} // namespace

FTPReply CFTPCommandSequenceWelcome::Run()
{
    CFTPCommandWelcomeReply welcome;
    return Execute(welcome);
}

FTPReply CFTPCommandSequenceAuthTls::Run()
{
    CFTPCommand command("AUTH TLS");
    return Execute(command);
}

FTPReply CFTPCommandSequenceProtectData::Run()
{
    try {
        CFTPCommand size("PBSZ 0"); // has to come first (RFC 2228, 3) and means nothing with TLS
        Execute(size);
    } catch (const FTPReply&) {
        // Some servers have no need of it; the next one decides.
    }
    CFTPCommand protect("PROT P");
    return Execute(protect);
}

FTPReply CFTPCommandSequenceLogin::Run(const QString& user, const CSecretText& password)
{
    CFTPCommandUser userCommand(Narrow(user));
    const FTPReply request = Execute(userCommand);
    std::string answer = AnswerPasswordRequest(Narrow(request.text), password.GetView());
    CFTPCommandPassword passwordCommand(answer);
    WipeText(answer);
    return Execute(passwordCommand);
}

FTPReply CFTPCommandSequenceQuit::Run()
{
    CFTPCommand quit("QUIT");
    return Execute(quit);
}

FTPReply CFTPCommandSequenceChangeDir::Run(const QString& path)
{
    CFTPCommandChangeDirectory change(Narrow(path));
    return Execute(change);
}

FTPReply CFTPCommandSequenceOpenDir::Run(const QString& path)
{
    FTPReply reply;
    for (const QString& name : NamesOf(path)) {
        if (!IsParent(name)) {
            try {
                CFTPCommandCreateDirectory create(Narrow(name));
                Execute(create);
            } catch (const FTPReply&) {
                // It may well exist; whether it does, entering it will tell.
            }
        }
        CFTPCommandChangeDirectory change(Narrow(name));
        reply = Execute(change);
    }
    return reply;
}

FTPReply CFTPCommandSequenceCreateDir::Run(const QString& path)
{
    FTPReply reply;
    for (const QString& name : NamesOf(path)) {
        if (IsParent(name)) {
            CFTPCommandChangeDirectory change(Narrow(name));
            reply = Execute(change);
        } else {
            reply = MakeOrEnter(Narrow(name));
        }
    }
    return reply;
}

FTPReply CFTPCommandSequenceCreateDir::MakeOrEnter(const std::string& name)
{
    FTPReply reply;
    try {
        CFTPCommandCreateDirectory create(name);
        reply = Execute(create);
    } catch (const FTPReply& refusal) {
        reply = refusal;
    }
    if (reply.GetGroup() == 2) {
        return reply;
    }
    CFTPCommandChangeDirectory change(name);
    return Execute(change);
}

FTPReply CFTPCommandSequenceRenameDir::Run(const QString& oldName, const QString& newName)
{
    CFTPCommandRenameFrom from(Narrow(oldName));
    CFTPCommandRenameTo to(Narrow(newName));
    // Together, so that a refused first one keeps the second from being sent.
    Queue(from);
    Queue(to);
    return ExecuteCurrentSequence();
}

FTPReply CFTPCommandSequenceTypeI::Run()
{
    CFTPCommand type("TYPE I");
    return Execute(type);
}

FTPReply CFTPCommandSequenceTypeA::Run()
{
    CFTPCommand type("TYPE A");
    return Execute(type);
}

FTPReply CFTPTransferSequence::ExecuteList(std::string_view verb, QString& listing)
{
    CFTPCommandList list(verb, AskForDataEndpoint());
    const FTPReply reply = Execute(list);
    listing = Widen(list.GetListing());
    return reply;
}

DataEndpoint CFTPTransferSequence::AskForDataEndpoint()
{
    DataEndpoint endpoint{.address = GetStream().GetPeer(), .tls = GetStream().GetTls()};
    if (endpoint.address.GetFamily() == AF_INET6) {
        return AskForDataEndpointExtended();
    }
    CFTPCommand pasv("PASV");
    endpoint.address.SetPort(ntohs(ParsePasvResponse(Narrow(Execute(pasv).text)).sin_port));
    return endpoint;
}

DataEndpoint CFTPTransferSequence::AskForDataEndpointExtended()
{
    DataEndpoint endpoint{.address = GetStream().GetPeer(), .tls = GetStream().GetTls()};
    CFTPCommand epsv("EPSV");
    endpoint.address.SetPort(ParseEpsvResponse(Narrow(Execute(epsv).text)));
    return endpoint;
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
    const DataEndpoint endpoint = AskForDataEndpoint();
    CFTPCommandSTOR stor(Narrow(remoteName),
                         {.localPath = localPath, .progressTarget = progressTarget, .endpoint = endpoint});
    return Execute(stor);
}
