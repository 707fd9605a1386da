#include "ftpengine/secrets/SystemKeyring.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

#include "ftpengine/net/Socket.h"
#include "support/ScratchFolder.h"

namespace {

const char* const busAddress = "DBUS_SESSION_BUS_ADDRESS";

// A bus that starts no services by itself: it would start a keyring that is locked.
const char* const busConfiguration =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context=\"default\">"
    "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>";

class SystemKeyring : public testing::Test {
protected:
    const CScratchFolder scratch;
    CSystemKeyring keyring{std::chrono::seconds(30)};

    SystemKeyring() { qputenv("XDG_RUNTIME_DIR", scratch.Path().toUtf8()); }
    ~SystemKeyring() override
    {
        Restore(busAddress, formerBus);
        Restore("XDG_RUNTIME_DIR", formerRuntime);
    }

private:
    static void Restore(const char* name, const QByteArray& value)
    {
        if (value.isNull()) {
            qunsetenv(name);
        } else {
            qputenv(name, value);
        }
    }

    const QByteArray formerBus = qgetenv(busAddress);
    const QByteArray formerRuntime = qgetenv("XDG_RUNTIME_DIR");
};

CKeyring::Item Item(const char* name, const QString& secret)
{
    return {.name = QString::fromLatin1(name), .label = QStringLiteral("anna@host"), .secret = secret};
}

void End(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(10'000)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace

TEST_F(SystemKeyring, WithoutASessionBusThereIsNone)
{
    qunsetenv(busAddress);
    for (const char* bus : {"", "disabled:", "unix:path=/nowhere"}) {
        if (*bus != '\0') {
            qputenv(busAddress, bus);
        }
        EXPECT_FALSE(keyring.Store(Item("a", QStringLiteral("secret")))) << bus;
        EXPECT_FALSE(keyring.Find(QStringLiteral("a")).has_value());
        EXPECT_FALSE(keyring.Remove(QStringLiteral("a")));
    }
}

TEST_F(SystemKeyring, ABusThatNeverAnswersIsWaitedForOnce)
{
    const CSocket silent(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = scratch.Path(QStringLiteral("silent")).toUtf8();
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    ASSERT_EQ(::bind(silent.GetDescriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent.GetDescriptor(), 4), 0);
    qputenv(busAddress, "unix:path=" + path);
    CSystemKeyring impatient(std::chrono::milliseconds(300));
    EXPECT_FALSE(impatient.Store(Item("a", QStringLiteral("secret"))));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(impatient.Find(QStringLiteral("a")).has_value());
    }
    EXPECT_LT(timer.elapsed(), 100 * 300);
}

TEST_F(SystemKeyring, KeepsFindsAndForgetsSecrets)
{
    for (const char* folder : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
        QDir().mkpath(scratch.Path(QString::fromLatin1(folder)));
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* folder : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
        environment.insert(QString::fromLatin1(folder), scratch.Path(QString::fromLatin1(folder)));
    }
    QProcess bus;
    bus.setProcessEnvironment(environment);
    bus.start(QStringLiteral("dbus-daemon"),
              {QStringLiteral("--config-file"), scratch.Write(QStringLiteral("bus.conf"), busConfiguration),
               QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
    ASSERT_TRUE(bus.waitForReadyRead(30'000)) << qPrintable(bus.errorString());
    const QByteArray address = bus.readLine().trimmed();
    qputenv(busAddress, address);
    environment.insert(QString::fromLatin1(busAddress), QString::fromUtf8(address));
    QProcess daemon;
    daemon.setProcessEnvironment(environment);
    daemon.start(
        QStringLiteral("gnome-keyring-daemon"),
        {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
    ASSERT_TRUE(daemon.waitForStarted()) << qPrintable(daemon.errorString());
    daemon.write("password of the keyring");
    daemon.closeWriteChannel();
    // It tells nobody when it is ready.
    QElapsedTimer patience;
    patience.start();
    while (!keyring.Store(Item("a", QStringLiteral("secret \u00e4\u20ac"))) && patience.elapsed() < 30'000) {
        daemon.waitForFinished(50);
    }
    EXPECT_EQ(keyring.Find(QStringLiteral("a")), CSecretText(QStringLiteral("secret \u00e4\u20ac")));
    EXPECT_FALSE(keyring.Find(QStringLiteral("b")).has_value());
    EXPECT_TRUE(keyring.Store(Item("a", QStringLiteral("another"))));
    EXPECT_TRUE(keyring.Store(Item("b", QStringLiteral("of b"))));
    EXPECT_EQ(keyring.Find(QStringLiteral("a")), CSecretText(QStringLiteral("another")));
    // Another run of the program finds them.
    EXPECT_EQ(CSystemKeyring().Find(QStringLiteral("b")), CSecretText(QStringLiteral("of b")));
    EXPECT_TRUE(keyring.Remove(QStringLiteral("a")));
    EXPECT_FALSE(keyring.Find(QStringLiteral("a")).has_value());
    EXPECT_EQ(keyring.Find(QStringLiteral("b")), CSecretText(QStringLiteral("of b")));
    End(daemon);
    EXPECT_FALSE(keyring.Find(QStringLiteral("b")).has_value());
    End(bus);
    // The end of the bus hasn't ended this process.
    EXPECT_FALSE(keyring.Find(QStringLiteral("b")).has_value());
}
