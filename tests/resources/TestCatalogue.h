#pragma once

#include <functional>

#include "resources/TextCatalogue.h"

// A catalogue that answers by a function.
class CTestCatalogue final : public CTextCatalogue {
public:
    using Answer = std::function<std::optional<QString>(int number, const std::vector<int>& numbers)>;

    explicit CTestCatalogue(Answer answer) : answer(std::move(answer)) {}

    std::optional<QString> FindText(int number, const std::vector<int>& numbers) const override
    {
        return answer(number, numbers);
    }

private:
    const Answer answer;
};

// Has one installed while it lives.
class CInstalledCatalogue {
public:
    explicit CInstalledCatalogue(CTestCatalogue::Answer answer)
    {
        InstallTextCatalogue(std::make_shared<CTestCatalogue>(std::move(answer)));
    }
    ~CInstalledCatalogue() { InstallTextCatalogue(nullptr); }
    CInstalledCatalogue(const CInstalledCatalogue&) = delete;
    CInstalledCatalogue& operator=(const CInstalledCatalogue&) = delete;
};
