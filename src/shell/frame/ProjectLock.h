#pragma once

#include <memory>

#include <QLockFile>
#include <QString>

// Says to other programs that a project is open: a hidden file beside it, ".NAME.lock", which goes with this
// object. One that a program left behind which ended without notice counts for nothing. Movable; may be
// destroyed on any thread.
class CProjectLock {
public:
    enum class State {
        None,          // of no project, or in a folder that takes no lock: nothing is known of other programs
        Held,          // nobody else has the project open
        OpenElsewhere, // another program has it, or has had it on another computer
    };

    CProjectLock() = default;
    explicit CProjectLock(const QString& projectPath);

    State GetState() const { return state; }
    // Of a project that is open elsewhere: the computer's name; empty if it is this one, or isn't known.
    QString GetOtherComputer() const;
    // Tries once more, in a folder that has been made since, say.
    void Retry();
    // Takes the lock of another program that the person knows to have ended.
    void Seize();

    // The path of the lock of a project.
    static QString PathFor(const QString& projectPath);

private:
    std::unique_ptr<QLockFile> file;
    State state = State::None;
};
