#include "cli/ServerVisit.h"

#include <cstdlib>
#include <exception>
#include <thread>

#include <QEventLoop>

#include "cli/Answers.h"
#include "cli/Interrupts.h"
#include "common/MessageTarget.h"
#include "common/Platform.h"
#include "ftpengine/messages/EngineStatus.h"
#include "ftpengine/session/OpenRemoteSession.h"

namespace {

struct VisitEnded {};

using Work = std::function<void(CRemoteSession& session)>;

void Visit(const SessionSetting& setting, const Work& work, ServerVisit& visit)
{
    std::unique_ptr<CRemoteSession> session;
    try {
        session = OpenRemoteSession(setting, visit.log);
        work(*session);
    } catch (int status) {
        visit.end = ServerVisit::End::NetworkFailure;
        visit.status = status;
        return;
    } catch (const FTPReply& reply) {
        visit.end = ServerVisit::End::Refused;
        visit.reply = reply;
    }
    if (session) {
        session->Quit();
    }
}

} // namespace

ServerVisit VisitServer(const FTPDestinationConnection& connection, const Work& work)
{
    const auto abort = std::make_shared<CEvent>();
    const SessionSetting setting{
        .destination = connection, .timeouts = {}, .abortEvent = abort, .trustFolder = FindTrustFolder()};
    QEventLoop loop;
    ServerVisit visit;
    std::exception_ptr failure;
    const CInterrupts interrupts([&abort](uint64_t count) {
        if (count > 1) {
            std::_Exit(ExitInterrupted);
        }
        abort->Set();
    });
    const auto target = CEventLoopTarget<VisitEnded>::Create([&loop](const VisitEnded&) { loop.quit(); });
    std::thread thread([&] {
        try {
            Visit(setting, work, visit);
        } catch (...) {
            failure = std::current_exception();
        }
        target->Post(VisitEnded());
    });
    loop.exec();
    thread.join();
    if (failure) {
        std::rethrow_exception(failure);
    }
    // A server that breaks a connection off is no person who does.
    if (visit.end == ServerVisit::End::NetworkFailure && abort->IsSet()) {
        visit.end = ServerVisit::End::Interrupted;
        visit.status = EngineStatus::Aborted;
    }
    return visit;
}
