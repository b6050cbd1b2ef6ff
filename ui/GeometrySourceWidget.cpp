#include "ui/GeometrySourceWidget.h"

#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QUrl>

#include "QmlScripting/ScriptDescribeList.h"
#include "ui/MessageBox.h"

GeometrySourceWidget::GeometrySourceWidget(const QString &title, const ScriptDescribeList &catalogue, QWidget *parent)
    : QWidget(parent)
    , m_catalogue(catalogue)
    , m_menu(new QMenu(this))
    , m_buttonScript(new QToolButton(this))
    , m_buttonEdit(new QToolButton(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(title, this));

    m_buttonScript->setObjectName(QStringLiteral("buttonScript"));
    m_buttonScript->setPopupMode(QToolButton::InstantPopup);
    m_buttonScript->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_buttonScript->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_buttonScript->setMenu(m_menu);
    layout->addWidget(m_buttonScript, 1);

    auto *buttonFolder = new QToolButton(this);
    buttonFolder->setObjectName(QStringLiteral("buttonFolder"));
    buttonFolder->setIcon(QIcon(QStringLiteral(":/folder.png")));
    buttonFolder->setToolTip(tr("Open folder with geometry scripts"));
    layout->addWidget(buttonFolder);
    auto *buttonClear = new QToolButton(this);
    buttonClear->setObjectName(QStringLiteral("buttonClear"));
    buttonClear->setIcon(QIcon(QStringLiteral(":/edit-clear.png")));
    buttonClear->setToolTip(tr("Clear"));
    layout->addWidget(buttonClear);
    m_buttonEdit->setObjectName(QStringLiteral("buttonEditScript"));
    m_buttonEdit->setIcon(QIcon(QStringLiteral(":/script_edit.png")));
    m_buttonEdit->setToolTip(tr("Edit script"));
    layout->addWidget(m_buttonEdit);

    connect(m_menu, &QMenu::triggered, this, &GeometrySourceWidget::entryTriggered);
    connect(buttonFolder, &QToolButton::clicked, this, [this] { openInSystem(m_catalogue.folder()); });
    connect(buttonClear, &QToolButton::clicked, this, [this] { emit scriptChosen(QString()); });
    connect(m_buttonEdit, &QToolButton::clicked, this, [this] { openScript(m_script); });
    m_menu->installEventFilter(this);
    fillMenu();
    setCurrentScript(QString());
}

void GeometrySourceWidget::setCurrentScript(const QString &script)
{
    m_script = script;
    m_buttonScript->setText(script.isEmpty() ? QString() : m_catalogue.findScript(script).name());
    m_buttonEdit->setEnabled(!script.isEmpty());
}

void GeometrySourceWidget::setMachineType(Machine::Type type)
{
    if (m_machineType == type)
        return;
    m_machineType = type;
    fillMenu();
}

void GeometrySourceWidget::fillMenu()
{
    m_menu->clear();
    for (int index = 0; index < m_catalogue.size(); ++index) {
        const ScriptDescribe &entry = m_catalogue.at(index);
        if (entry.isSeparator()) {
            m_menu->addSeparator();
            continue;
        }
        QAction *action = m_menu->addAction(entry.name());
        action->setData(index);
        action->setEnabled(entry.isApplicable(m_machineType));
    }
}

void GeometrySourceWidget::entryTriggered(QAction *action)
{
    const int index = action->data().toInt();
    if (index >= 0 && index < m_catalogue.size())
        emit scriptChosen(m_catalogue.at(index).script());
}

bool GeometrySourceWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_menu && event->type() == QEvent::ContextMenu) {
        const auto *menuEvent = static_cast<QContextMenuEvent *>(event);
        QAction *action = m_menu->actionAt(menuEvent->pos());
        if (action && action->isEnabled() && !action->isSeparator())
            showEntryMenu(action, menuEvent->globalPos());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void GeometrySourceWidget::showEntryMenu(QAction *action, const QPoint &position)
{
    const QString script = m_catalogue.at(action->data().toInt()).script();
    QMenu menu;
    menu.addAction(tr("Edit script '%1'").arg(action->text()), this, [this, script] { openScript(script); });
    menu.exec(position);
}

void GeometrySourceWidget::openScript(const QString &script)
{
    if (!script.isEmpty())
        openInSystem(m_catalogue.folder() + QLatin1Char('/') + script);
}

void GeometrySourceWidget::openInSystem(const QString &path)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        MessageBox::critical(this, QCoreApplication::applicationName(),
                             tr("Can't open file %1").arg(QDir::toNativeSeparators(path)));
}
