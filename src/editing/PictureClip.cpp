#include "editing/PictureClip.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "document/galleries/Gallery.h"

namespace {

using Type = CVariant::Type;

const QString pathKey = QStringLiteral("path");
const QString angleKey = QStringLiteral("angle");
const QString textsKey = QStringLiteral("texts");
const QString restKey = QStringLiteral("rest");
const QString typeKey = QStringLiteral("type");
const QString valueKey = QStringLiteral("value");

QJsonObject WriteVariable(const CVariant& variable)
{
    const Type type = variable.GetType();
    const QJsonValue value = type == Type::Integer  ? QJsonValue(variable.GetInteger())
                             : type == Type::String ? QJsonValue(variable.GetString())
                                                    : QJsonValue(variable.GetNumber());
    return {{typeKey, static_cast<int>(type)}, {valueKey, value}};
}

CVariant ReadVariable(const QJsonObject& variable)
{
    const QJsonValue value = variable[valueKey];
    switch (static_cast<Type>(variable[typeKey].toInt())) {
    case Type::Integer:
        return CVariant(static_cast<int32_t>(value.toInt()));
    case Type::Real:
        return CVariant::Real(value.toDouble());
    case Type::Date:
        return CVariant::Date(value.toDouble());
    case Type::String:
        return CVariant(value.toString());
    case Type::Empty:
        break;
    }
    return CVariant();
}

QJsonObject WritePicture(const CFilePictureInfo& picture)
{
    QJsonObject texts;
    for (const auto& [name, value] : picture.GetVariables().GetEntries()) {
        if (!value.IsEmpty()) {
            texts[name] = WriteVariable(value);
        }
    }
    return {{pathKey, picture.GetPath()},
            {angleKey, picture.GetAngle()},
            {textsKey, texts},
            {restKey, QString::fromLatin1(picture.GetRest().ToBytes().toBase64())}};
}

CFilePictureInfo ReadPicture(const QJsonObject& object)
{
    constexpr int fullTurn = 4;
    CFilePictureInfo picture(object[pathKey].toString(), object[angleKey].toInt() & (fullTurn - 1));
    const QJsonObject texts = object[textsKey].toObject();
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        if (const CVariant value = ReadVariable(text->toObject()); !value.IsEmpty()) {
            picture.SetVariable(text.key(), value);
        }
    }
    picture.SetRest(CXmlRest::FromBytes(QByteArray::fromBase64(object[restKey].toString().toLatin1())));
    picture.SetState(LookAtFile(picture.GetPath()));
    return picture;
}

} // namespace

QByteArray WriteClip(const CGallery& gallery, const std::vector<int32_t>& positions)
{
    QJsonArray pictures;
    for (const int32_t position : positions) {
        if (const auto* file = dynamic_cast<const CFilePictureInfo*>(gallery.GetPictures().GetAt(position))) {
            pictures.append(WritePicture(*file));
        }
    }
    return QJsonDocument(pictures).toJson(QJsonDocument::Compact);
}

std::vector<CFilePictureInfo> ReadClip(const QByteArray& clip)
{
    std::vector<CFilePictureInfo> pictures;
    const QJsonArray array = QJsonDocument::fromJson(clip).array();
    for (const auto& value : array) {
        const QJsonObject object = value.toObject();
        if (!object[pathKey].toString().isEmpty()) {
            pictures.push_back(ReadPicture(object));
        }
    }
    return pictures;
}
