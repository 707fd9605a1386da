#include "shell_support/DialogTools.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QStyleFactory>

#include "common/Text.h"
#include "shell/look/ColourScheme.h"

namespace {

QPalette DarkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(45, 45, 45));
    palette.setColor(QPalette::Window, QColor(45, 45, 45));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::Button, QColor(60, 60, 60));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::ToolTipText, QPalette::HighlightedText}) {
        palette.setColor(role, QColor(230, 230, 230));
        palette.setColor(QPalette::Disabled, role, QColor(120, 120, 120));
    }
    return palette;
}

QPalette LightPalette()
{
    QPalette palette(QColor(239, 239, 239));
    palette.setColor(QPalette::Base, Qt::white);
    return palette;
}

bool IsInside(const QWidget* control, const QWidget& dialog)
{
    return control->isVisibleTo(&dialog) && control->isEnabledTo(&dialog);
}

QList<QWidget*> TabStops(const QWidget& dialog)
{
    QList<QWidget*> stops;
    for (QWidget* control : dialog.findChildren<QWidget*>()) {
        if ((control->focusPolicy() & Qt::TabFocus) && !control->focusProxy() && IsInside(control, dialog) &&
            !control->objectName().startsWith(QStringLiteral("qt_"))) {
            stops += control;
        }
    }
    return stops;
}

// Arrow keys go from the chosen one of a group to its others.
bool IsReachedByArrows(const QWidget* control)
{
    return qobject_cast<const QRadioButton*>(control) != nullptr;
}

void ExpectReachedByTab(QWidget& dialog)
{
    const QList<QWidget*> stops = TabStops(dialog);
    QSet<QWidget*> reached;
    for (int i = 0; i < 2 * stops.size() + 2; ++i) {
        if (QWidget* focus = QApplication::focusWidget()) {
            reached += focus;
            QTest::keyClick(focus, Qt::Key_Tab);
        }
    }
    for (const QWidget* stop : stops) {
        EXPECT_TRUE(IsReachedByArrows(stop) || reached.contains(const_cast<QWidget*>(stop)))
            << qPrintable(stop->objectName()) << " of class " << stop->metaObject()->className();
    }
}

QString TextWithKey(const QWidget& widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->buddy() ? label->text() : QString();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text();
    }
    const auto* group = qobject_cast<const QGroupBox*>(&widget);
    return group ? group->title() : QString();
}

void ExpectKeysOfTheirOwn(const QWidget& dialog)
{
    QMap<QString, QString> keys;
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        const QString text = TextWithKey(*widget);
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty() && IsInside(widget, dialog)) {
            EXPECT_FALSE(keys.contains(key))
                << qPrintable(key) << " of " << qPrintable(text) << " and " << qPrintable(keys[key]);
            keys[key] = text;
        }
    }
}

} // namespace

void Click(const QWidget& dialog, const char* buttonName)
{
    auto& button = Find<QAbstractButton>(dialog, buttonName);
    ASSERT_TRUE(button.isEnabled()) << buttonName;
    button.click();
}

CModalAnswer::CModalAnswer(std::function<void(QWidget&)> answer) : former(QApplication::activeModalWidget())
{
    QObject::connect(&timer, &QTimer::timeout, &timer, [this, answer = std::move(answer)] {
        QWidget* modal = QApplication::activeModalWidget();
        if (modal && modal != former) {
            asked = true;
            timer.stop();
            answer(*modal);
        }
    });
    timer.start(0);
}

CMessageAnswer::CMessageAnswer(const QString& button)
    : answer([this, button](QWidget& modal) {
          auto* box = qobject_cast<QMessageBox*>(&modal);
          ASSERT_NE(box, nullptr) << modal.metaObject()->className();
          text = box->text();
          title = box->windowTitle();
          for (QAbstractButton* each : box->buttons()) {
              if (QString(each->text()).remove(QLatin1Char('&')) == button) {
                  each->click();
                  return;
              }
          }
          ADD_FAILURE() << "no button " << qPrintable(button);
          box->reject();
      })
{}

void ExpectUsable(QWidget& dialog, const QString& name)
{
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_LE(dialog.width(), 1024);
    EXPECT_LE(dialog.height(), 600);
    EXPECT_LE(dialog.minimumSizeHint().width(), 1024);
    EXPECT_LE(dialog.minimumSizeHint().height(), 600);
    EXPECT_FALSE(dialog.windowTitle().isEmpty());
    for (const QWidget* stop : TabStops(dialog)) {
        EXPECT_FALSE(stop->accessibleName().isEmpty() && TextWithKey(*stop).isEmpty())
            << qPrintable(stop->objectName()) << " of class " << stop->metaObject()->className();
        EXPECT_FALSE(stop->objectName().isEmpty()) << stop->metaObject()->className();
    }
    ExpectKeysOfTheirOwn(dialog);
    KeepPictures(dialog, name);
    ExpectReachedByTab(dialog);
}

void KeepPictures(QWidget& widget, const QString& name)
{
    const QString folder = QStringLiteral(SCREENSHOT_FOLDER);
    ASSERT_TRUE(QDir().mkpath(folder));
    const QPalette former = QApplication::palette();
    for (const bool dark : {false, true}) {
        QApplication::setStyle(dark ? static_cast<QStyle*>(new CDarkFusionStyle)
                                    : QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(dark ? DarkPalette() : LightPalette());
        QCoreApplication::processEvents();
        const QString palette = dark ? QStringLiteral("dark") : QStringLiteral("light");
        EXPECT_TRUE(widget.grab().save(QStringLiteral("%1/%2-%3.png").arg(folder, name, palette)));
    }
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(former);
    QCoreApplication::processEvents();
}
