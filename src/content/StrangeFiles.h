#pragma once

#include <QStringList>

class CGalleryProject;
class CStopSignal;
struct GenerationTarget;

// The files in the target that a run would overwrite though its record doesn't list them: somebody else's.
// Full paths in the order of the run. Nothing is written there; a page or a style file that holds the same
// bytes already is nobody's loss. Costs a walk over the target, and a making of all pages only if there are
// files that the record doesn't list. Throws as GeneratePages does.
QStringList FindStrangeFiles(CGalleryProject& project, const GenerationTarget& target,
                             const CStopSignal& stop);
