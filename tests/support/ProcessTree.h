#pragma once

#include <QProcess>

// Ends a program at once and without notice, with every process that it has started and that has not left it:
// a server's processes for its sessions, too, which go on without the one that listens. Waits for its end.
void KillTree(QProcess& process);
