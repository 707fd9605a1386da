#pragma once

#include <string>
#include <vector>

// Starts libvips at its first use and keeps it silent: its warnings go to the collector of the thread that
// they come up on, or nowhere. Any thread may call it. One worker runs per processor core, so libvips itself
// is told to use one thread, and to cache no operations.
void StartVips();

// Takes the warnings of libvips on the constructing thread while it lives. On the stack of that thread only;
// one at a time.
class CVipsWarnings {
public:
    CVipsWarnings();
    ~CVipsWarnings();
    CVipsWarnings(const CVipsWarnings&) = delete;
    CVipsWarnings& operator=(const CVipsWarnings&) = delete;

    const std::vector<std::string>& Get() const { return messages; }
    void Add(const char* message) { messages.emplace_back(message); }

private:
    std::vector<std::string> messages;
};
