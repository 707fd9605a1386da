#pragma once

class QString;

// What a view does with a link that was followed in its page. Each view implements it; the host of the page
// only borrows it. Called on the screen's thread.
class CContentURLLoader {
public:
    // The address as the page wrote it, without the page's own address before it and without what stands from
    // "#".
    virtual void LoadURL(const QString& url) = 0;

protected:
    ~CContentURLLoader() = default;
};
