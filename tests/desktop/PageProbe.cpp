#include "PageProbe.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QtEndian>

namespace {

constexpr int Patience = 20'000; // milliseconds

} // namespace

QStringList CPageProbe::ListPages(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!socket.waitForConnected(Patience)) {
        return {};
    }
    // The addresses in the answer are made of this host and port.
    socket.write("GET /json/list HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) +
                 "\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    qsizetype length = -1;
    while (length < 0 || answer.size() < length) {
        if (!socket.waitForReadyRead(Patience)) {
            break;
        }
        answer += socket.readAll();
        const qsizetype head = answer.indexOf("\r\n\r\n");
        const qsizetype field = answer.toLower().indexOf("content-length:");
        if (head >= 0 && field >= 0) {
            length =
                head + 4 + answer.mid(field + 15, answer.indexOf('\r', field) - field - 15).trimmed().toInt();
        }
    }
    QStringList addresses;
    const QByteArray body = answer.mid(answer.indexOf("\r\n\r\n") + 4);
    for (const QJsonValue& page : QJsonDocument::fromJson(body).array()) {
        addresses += page[QStringLiteral("webSocketDebuggerUrl")].toString();
    }
    addresses.removeAll(QString());
    return addresses;
}

CPageProbe::CPageProbe(const QString& address) : connected(ShakeHands(address)) {}

bool CPageProbe::ShakeHands(const QString& address)
{
    const QUrl url(address);
    socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
    if (!socket.waitForConnected(Patience)) {
        return false;
    }
    socket.write("GET " + url.path().toUtf8() +
                 " HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                 "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dmlzdG9yYW1hLXByb2JlIQ==\r\n\r\n");
    qsizetype end = -1;
    while (end < 0) {
        if (!socket.waitForReadyRead(Patience)) {
            return false;
        }
        buffer += socket.readAll();
        end = buffer.indexOf("\r\n\r\n");
    }
    const bool accepted = buffer.startsWith("HTTP/1.1 101");
    buffer.remove(0, end + 4);
    return accepted;
}

QVariant CPageProbe::Evaluate(const QString& expression)
{
    const int id = ++lastId;
    const QJsonObject question{
        {QStringLiteral("id"), id},
        {QStringLiteral("method"), QStringLiteral("Runtime.evaluate")},
        {QStringLiteral("params"),
         QJsonObject{{QStringLiteral("expression"), expression}, {QStringLiteral("returnByValue"), true}}}};
    Send(QJsonDocument(question).toJson(QJsonDocument::Compact));
    for (;;) {
        const QByteArray text = Receive();
        if (text.isEmpty()) {
            connected = false;
            return {};
        }
        const QJsonObject message = QJsonDocument::fromJson(text).object();
        if (message[QStringLiteral("id")].toInt() == id) {
            return message[QStringLiteral("result")][QStringLiteral("result")][QStringLiteral("value")]
                .toVariant();
        }
    }
}

// RFC 6455, 5.2: one frame of text. A client masks what it sends; a mask of zeros leaves the text readable.
void CPageProbe::Send(const QByteArray& text)
{
    QByteArray frame("\x81", 1);
    if (text.size() < 126) {
        frame += static_cast<char>(0x80 | text.size());
    } else if (text.size() < 0x10000) {
        const auto length = qToBigEndian(static_cast<quint16>(text.size()));
        frame += static_cast<char>(0x80 | 126);
        frame += QByteArray(reinterpret_cast<const char*>(&length), sizeof length);
    } else {
        const auto length = qToBigEndian(static_cast<quint64>(text.size()));
        frame += static_cast<char>(0x80 | 127);
        frame += QByteArray(reinterpret_cast<const char*>(&length), sizeof length);
    }
    socket.write(frame + QByteArray(4, '\0') + text);
    socket.flush();
}

QByteArray CPageProbe::Receive()
{
    QByteArray text;
    bool isLast = false;
    while (!isLast) {
        const qsizetype before = text.size();
        text += ReceiveFrame(isLast);
        if (text.size() == before) {
            return {};
        }
    }
    return text;
}

QByteArray CPageProbe::ReceiveFrame(bool& isLast)
{
    if (!Fill(2)) {
        isLast = true;
        return {};
    }
    isLast = (static_cast<quint8>(buffer[0]) & 0x80) != 0;
    quint64 length = static_cast<quint8>(buffer[1]) & 0x7f;
    qsizetype head = 2;
    if (length == 126 && Fill(4)) {
        length = qFromBigEndian<quint16>(buffer.constData() + 2);
        head = 4;
    } else if (length == 127 && Fill(10)) {
        length = qFromBigEndian<quint64>(buffer.constData() + 2);
        head = 10;
    }
    const auto size = static_cast<qsizetype>(length);
    if (!Fill(head + size)) {
        isLast = true;
        return {};
    }
    const QByteArray body = buffer.mid(head, size);
    buffer.remove(0, head + size);
    return body;
}

bool CPageProbe::Fill(qsizetype size)
{
    while (buffer.size() < size) {
        if (!socket.waitForReadyRead(Patience)) {
            return false;
        }
        buffer += socket.readAll();
    }
    return true;
}
