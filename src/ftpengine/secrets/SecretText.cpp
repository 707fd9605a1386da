#include "ftpengine/secrets/SecretText.h"

#include <new>
#include <sodium.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QStringEncoder>

namespace {

std::size_t SizeInPages(std::size_t size)
{
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page;
}

char* AllocatePages(std::size_t size)
{
    void* const pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        throw std::bad_alloc();
    }
    // Both are favours: a user may be allowed to lock little or nothing.
#ifdef MADV_DONTDUMP
    static_cast<void>(::madvise(pages, size, MADV_DONTDUMP));
#endif
    static_cast<void>(::mlock(pages, size));
    return static_cast<char*>(pages);
}

} // namespace

class CSecretText::CPages final {
public:
    explicit CPages(const QString& text)
    {
        // Straight into the pages, so that no other memory ever holds the bytes.
        QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
        const auto most = static_cast<std::size_t>(encoder.requiredSpace(text.size())) + 1;
        capacity = SizeInPages(most);
        bytes = AllocatePages(capacity);
        size = static_cast<std::size_t>(encoder.appendToBuffer(bytes, text) - bytes);
        bytes[size] = '\0';
    }
    ~CPages()
    {
        sodium_memzero(bytes, capacity);
        ::munlock(bytes, capacity);
        ::munmap(bytes, capacity);
    }
    CPages(const CPages&) = delete;
    CPages& operator=(const CPages&) = delete;

    char* bytes = nullptr;
    std::size_t size = 0;     // of the text, in bytes
    std::size_t capacity = 0; // whole pages, in bytes
};

CSecretText::CSecretText(const QString& text)
    : pages(text.isEmpty() ? nullptr : std::make_shared<const CPages>(text))
{}

const char* CSecretText::GetBytes() const
{
    return pages ? pages->bytes : "";
}

std::size_t CSecretText::GetSize() const
{
    return pages ? pages->size : 0;
}

QString CSecretText::GetText() const
{
    return QString::fromUtf8(GetBytes(), static_cast<qsizetype>(GetSize()));
}

void WipeText(QString& text)
{
    if (!text.isEmpty() && text.isDetached()) {
        sodium_memzero(text.data(), static_cast<std::size_t>(text.size()) * sizeof(char16_t));
        text.resize(0);
        return;
    }
    text = QString();
}

void WipeText(std::string& text)
{
    sodium_memzero(text.data(), text.size());
    text.clear();
}
