#include "shell/look/Panel.h"

#include <algorithm>

#include <QFontMetrics>
#include <QResizeEvent>
#include <QToolBar>
#include <QVBoxLayout>

CPanel::CPanel(QWidget* parent) : QWidget(parent), arrangement(new QVBoxLayout(this))
{
    arrangement->setContentsMargins(0, 0, 0, 0);
    arrangement->setSpacing(0);
}

void CPanel::SetToolBar(QToolBar* toolBar)
{
    arrangement->insertWidget(0, toolBar);
}

void CPanel::SetClient(QWidget* client)
{
    arrangement->addWidget(client, 1);
}

void CPanel::SetNotice(QWidget* notice)
{
    arrangement->insertWidget(1, notice);
}

CPanelTitle::CPanelTitle(QWidget* parent) : QLabel(parent)
{
    QFont titleFont = font();
    titleFont.setFamilies({QStringLiteral("Tahoma"), titleFont.family()});
    titleFont.setPixelSize(12);
    titleFont.setWeight(QFont::DemiBold);
    setFont(titleFont);
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setContentsMargins(6, 0, 6, 0);
}

void CPanelTitle::SetTitle(const QString& newTitle)
{
    title = newTitle;
    setAccessibleName(title);
    Fit();
}

QSize CPanelTitle::sizeHint() const
{
    const QMargins margins = contentsMargins();
    const int width = fontMetrics().horizontalAdvance(title) + margins.left() + margins.right();
    return {width, QLabel::sizeHint().height()};
}

QSize CPanelTitle::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void CPanelTitle::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    Fit();
}

void CPanelTitle::Fit()
{
    const bool fits = fontMetrics().horizontalAdvance(title) <= contentsRect().width();
    setText(fits ? title : CutTitle(title, contentsRect().width(), fontMetrics().averageCharWidth()));
    setToolTip(fits ? QString() : title);
}

QString CutTitle(const QString& title, int width, int averageCharacterWidth)
{
    static const QString ending = QStringLiteral("...");
    const qsizetype characters = width / std::max(averageCharacterWidth, 1);
    if (title.size() <= characters) {
        return title;
    }
    return title.left(std::max<qsizetype>(characters - ending.size(), 0)) + ending;
}
