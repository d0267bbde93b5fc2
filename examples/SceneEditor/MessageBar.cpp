#include <examples/SceneEditor/MessageBar.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>

namespace sceneeditor
{
MessageBar::MessageBar(QWidget* parent) : QFrame(parent)
{
    setFrameShape(QFrame::StyledPanel);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    m_icon = new QLabel;
    m_text = new QLabel;
    m_text->setObjectName(QStringLiteral("messageText"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* dismiss = new QPushButton(tr("Dismiss"));
    dismiss->setObjectName(QStringLiteral("messageClose"));
    row->addWidget(m_icon);
    row->addWidget(m_text, 1);
    row->addWidget(dismiss);
    connect(dismiss, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void MessageBar::show(Severity severity, const QString& text)
{
    const QIcon icon =
        style()->standardIcon(severity == Warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxCritical);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(icon.pixmap(size));
    m_text->setText(text);
    QFrame::show();
}
} // namespace sceneeditor
