#pragma once

#include <QString>
#include <QTcpSocket>
#include <QVariant>

// Looks into a page of the running program, through the browser control's remote debugging port (Chrome
// DevTools Protocol over a WebSocket, RFC 6455). Looks only: what a test does it does by mouse and keyboard.
class CPageProbe {
public:
    // Addresses of the web sockets of all pages that the program has open. Empty while it is not ready.
    static QStringList ListPages(quint16 port);

    // address: from ListPages.
    explicit CPageProbe(const QString& address);

    bool IsConnected() const { return connected; }

    // The value of a JavaScript expression; invalid if the page does not answer or throws.
    QVariant Evaluate(const QString& expression);

private:
    bool ShakeHands(const QString& address);
    bool Fill(qsizetype size);
    void Send(const QByteArray& text);
    QByteArray Receive();
    QByteArray ReceiveFrame(bool& isLast);

    QTcpSocket socket;
    QByteArray buffer;
    bool connected = false;
    int lastId = 0;
};
