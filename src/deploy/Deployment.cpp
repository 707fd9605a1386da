#include "deploy/Deployment.h"

#include "common/Exceptions.h"
#include "common/FileSystem.h"
#include "common/Text.h"
#include "content/StrangeFiles.h"
#include "deploy/PublishedProject.h"
#include "deploy/server/ServerDeployment.h"
#include "resources/StringTable.h"

namespace {

QString SiteKeyOf(const CGalleryProject& project, const ServerTarget& target)
{
    return ProjectKeyOf(project) + QLatin1Char('\n') + target.server + QLatin1Char('\n') + target.directory;
}

DeploySummary SummaryOf(const SitePlan& plan)
{
    return {.newFiles = plan.CountNew(),
            .changedFiles = plan.CountChanged(),
            .removedFiles = plan.CountRemoved(),
            .unchangedFiles = plan.unchanged,
            .bytes = plan.CountBytes()};
}

QStringList FindStrangersIn(const FolderTarget& target, CGalleryProject& published, CDeploymentRecord& record,
                            const CStopSignal& stop)
{
    return FindStrangeFiles(published, {target.folder, &record}, stop);
}

} // namespace

DeployDoubts ExamineDeployment(CGalleryProject& project, const DeploymentTarget& target,
                               const QString& recordsFolder)
{
    project.LookForFiles();
    const CDeployModeScope deployMode(project);
    DeployDoubts doubts = FindMissingFiles(project);
    if (const auto* const folder = std::get_if<FolderTarget>(&target)) {
        const CPublishedProject published(project, doubts);
        CDeploymentRecord record = OpenRecordFor(project, recordsFolder, folder->folder);
        doubts.strangeFiles = FindStrangersIn(*folder, published.Get(), record, CStopSignal());
    }
    return doubts;
}

QStringList DeploySummary::GetLines() const
{
    return {Text(StringId::SummaryNew, QString::number(newFiles)),
            Text(StringId::SummaryChanged, QString::number(changedFiles)),
            Text(StringId::SummaryRemoved, QString::number(removedFiles)),
            Text(StringId::SummaryBytes, QString::number(bytes))};
}

CDeployment::CDeployment(CGalleryProject& project, const Setting& setting)
    : project(project), setting(setting)
{}

CDeployment::~CDeployment()
{
    RequestCancel();
    WaitFinished();
}

void CDeployment::Start(std::weak_ptr<CDeploymentReceiver> messageReceiver)
{
    receiver = std::move(messageReceiver);
    thread = std::thread([this] { Run(); });
}

void CDeployment::RequestCancel()
{
    cancel.Set();
    if (const auto* const target = std::get_if<ServerTarget>(&setting.target)) {
        target->abort->Set();
    }
    decision.Set();
}

void CDeployment::Consent()
{
    decision.Set();
}

void CDeployment::WaitFinished()
{
    if (thread.joinable()) {
        thread.join();
    }
}

void CDeployment::Run()
{
    try {
        end = Deploy();
    } catch (const SendCancelled&) {
        end = DeployCancelled();
    } catch (const SendFailure& failure) {
        end = EndOf(failure);
    } catch (const CExceptionBase& failure) {
        end = DeployFailure{failure.GetCaption(), failure.GetDescription(), failure.GetAdvice()};
    } catch (const std::exception& failure) {
        end = DeployFailure{Text(StringId::UnexpectedErrorCaption), Widen(failure.what()),
                            Text(StringId::UnexpectedErrorAdvice)};
    }
    Post(DeployEnded());
}

DeployEnd CDeployment::Deploy()
{
    Begin(DeployPhase::Look);
    project.LookForFiles();
    const CDeployModeScope deployMode(project);
    const DeployDoubts missing = FindMissingFiles(project);
    if (missing.IsAnyMissing() && !setting.leaveOutMissing) {
        return missing;
    }
    result.warnings = WarningsOf(missing);
    const CPublishedProject published(project, missing);
    return std::visit([&](const auto& target) { return DeployTo(target, published.Get(), missing); },
                      setting.target);
}

DeployEnd CDeployment::DeployTo(const FolderTarget& target, CGalleryProject& published,
                                const DeployDoubts& missing)
{
    CDeploymentRecord record = OpenRecordFor(project, setting.recordsFolder, target.folder);
    const GenerationTarget generation{target.folder, &record};
    if (!setting.overwrite) {
        const QStringList strangers = FindStrangersIn(target, published, record, cancel);
        if (!strangers.isEmpty()) {
            return DeployDoubts{.absentPictures = {}, .unreadableWatermarks = {}, .strangeFiles = strangers};
        }
    }
    if (cancel.IsSet()) {
        return DeployCancelled();
    }
    // What was written by a run that failed is noted as well.
    const CRecordSaver saver(record);
    Generate(published, generation);
    if (cancel.IsSet()) {
        return DeployCancelled();
    }
    // What a missing picture has left in the site is no leftover: it may come back.
    if (!missing.IsAnyMissing()) {
        record.RemoveLeftovers();
    }
    return DeployDone();
}

DeployEnd CDeployment::DeployTo(const ServerTarget& target, CGalleryProject& published,
                                const DeployDoubts& missing)
{
    CServerDeployment server({.sites = {.folder = setting.sitesFolder},
                              .siteKey = SiteKeyOf(project, target),
                              .projectKey = ProjectKeyOf(project),
                              .place = {target.directory},
                              .crew = {.open = target.open,
                                       .abort = target.abort,
                                       .mostSessions = target.mostSessions,
                                       .onRetry = [this](const SendRetry& retry) { Post(retry); },
                                       .pause = {},
                                       .now = {}}});
    server.TryLogin();
    const SiteSources sources = GenerateForServer(server.GetFolder(), published, missing);
    if (cancel.IsSet()) {
        return DeployCancelled();
    }
    Begin(DeployPhase::Compare);
    const SitePlan plan = server.Compare(sources, !missing.IsAnyMissing(), cancel);
    result.summary = SummaryOf(plan);
    return SendTo(server, plan);
}

DeployEnd CDeployment::SendTo(CServerDeployment& server, const SitePlan& plan)
{
    DeploySummary& summary = *result.summary;
    const bool isInDoubt = !setting.overwrite && !plan.strangers.isEmpty();
    summary.awaitsConsent = setting.awaitsConsent && !setting.isDryRun && !isInDoubt && !summary.IsNothing();
    Post(summary);
    if (isInDoubt) {
        server.Finish();
        return DeployDoubts{.absentPictures = {}, .unreadableWatermarks = {}, .strangeFiles = plan.strangers};
    }
    if (setting.isDryRun) {
        server.Finish();
        return DeployDone();
    }
    if (summary.awaitsConsent) {
        decision.Wait(NoLimit);
    }
    if (cancel.IsSet()) {
        return DeployCancelled();
    }
    Begin(DeployPhase::Send);
    result.warnings += server.Send(
        plan, [this](const SendProgress& progress) { Post(progress); }, [this] { Begin(DeployPhase::Tidy); });
    server.Finish();
    return DeployDone();
}

// What a missing picture has left of it in the site's folder stays among the files.
SiteSources CDeployment::GenerateForServer(const CSiteFolder& folder, CGalleryProject& published,
                                           const DeployDoubts& missing)
{
    const QString site = folder.GetSite();
    // A disk that is told to hurry makes the network wait.
    CDeploymentRecord record(folder.GetRecordPath(), site, CDeploymentRecord::usualRestless,
                             Durability::Plain);
    const CRecordSaver saver(record);
    SiteSources sources;
    Generate(published, {site, &record, &sources});
    if (!cancel.IsSet() && !missing.IsAnyMissing()) {
        record.RemoveLeftovers();
    }
    for (const QString& path : record.GetFiles()) {
        sources[path] = JoinPath(site, path);
    }
    return sources;
}

void CDeployment::Generate(CGalleryProject& published, const GenerationTarget& target)
{
    Begin(DeployPhase::Pages);
    result.generation = GeneratePages(published, target, cancel, *this);
    result.warnings += result.generation.warnings;
}

DeployEnd CDeployment::EndOf(const SendFailure& failure)
{
    result.transcript = failure.log.transcript;
    if (IsServerDoubt(failure)) {
        return ServerDoubt{failure.status, failure.log.identity};
    }
    return DescribeFailure(failure);
}

void CDeployment::OnPageDone(int32_t donePages, int32_t totalPages)
{
    Post(DeployPagesDone{donePages, totalPages});
}

void CDeployment::Begin(DeployPhase phase)
{
    Post(DeployPhaseBegun{phase});
}

void CDeployment::Post(DeploymentMessage message)
{
    PostTo<DeploymentMessage>(receiver, std::move(message));
}
