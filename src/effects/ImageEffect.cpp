#include "effects/ImageEffect.h"

void CImageEffectCompound::Add(std::shared_ptr<const CImageEffect> effect)
{
    effects.push_back(std::move(effect));
}

void CImageEffectCompound::Clear()
{
    effects.clear();
}

QString CImageEffectCompound::GetResultFileName(const QString& fileName) const
{
    QString name = fileName;
    for (const auto& effect : effects) {
        name = effect->GetResultFileName(name);
    }
    return name;
}

void CImageEffectCompound::Apply(CImageEffectSource& source) const
{
    for (const auto& effect : effects) {
        effect->Apply(source);
    }
}

QString CImageEffectCompound::GetKey() const
{
    QString keys = QStringLiteral("chain");
    for (const auto& effect : effects) {
        const QString key = effect->GetKey();
        if (key.isNull()) {
            return {};
        }
        keys += QLatin1Char('\n') + key;
    }
    return keys;
}
