#include "ui/MaterialSelectDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"

MaterialSelectDialog::MaterialSelectDialog(const QString &title, MaterialDescribeEngine &catalogue,
                                           const QString &currentName, QWidget *parent)
    : QDialog(parent), m_editFind(new QLineEdit(this)), m_treeView(new QTreeView(this)),
      m_buttonBox(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)),
      m_proxy(new QSortFilterProxyModel(this))
{
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    resize(420, 480);
    m_editFind->setObjectName(QStringLiteral("editFind"));
    m_editFind->setPlaceholderText(tr("<Find material>"));
    m_editFind->hide();
    m_treeView->setObjectName(QStringLiteral("treeView"));
    m_treeView->header()->hide();
    m_treeView->setModel(m_proxy);
    m_buttonBox->setObjectName(QStringLiteral("buttonBox"));
    m_proxy->setRecursiveFilteringEnabled(true);
    m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_editFind);
    layout->addWidget(m_treeView);
    layout->addWidget(m_buttonBox);

    connect(m_editFind, &QLineEdit::textChanged, m_proxy, &QSortFilterProxyModel::setFilterFixedString);
    connect(m_buttonBox, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_treeView, &QTreeView::doubleClicked, this, &MaterialSelectDialog::activated);

    setCatalogue(&catalogue);
    setCurrentMaterial(currentName);
}

void MaterialSelectDialog::setCatalogue(MaterialDescribeEngine *catalogue)
{
    m_proxy->setSourceModel(catalogue);
    connect(m_treeView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &MaterialSelectDialog::currentChanged, Qt::UniqueConnection);
    currentChanged(m_treeView->currentIndex());
}

void MaterialSelectDialog::setCurrentMaterial(const QString &name)
{
    const auto *catalogue = qobject_cast<const MaterialDescribeEngine *>(m_proxy->sourceModel());
    if (!catalogue)
        return;
    const QModelIndex index = m_proxy->mapFromSource(catalogue->indexOf(name));
    if (!index.isValid())
        return;
    m_treeView->setCurrentIndex(index);
    m_treeView->scrollTo(index);
}

QString MaterialSelectDialog::selectedMaterial() const
{
    const QModelIndex index = m_treeView->currentIndex();
    if (!isMaterial(index))
        return QString();
    // The first row of the catalogue is no material: it shows "Not assigned".
    const QModelIndex source = m_proxy->mapToSource(index);
    if (!source.parent().isValid() && source.row() == 0)
        return QString();
    return index.data(Qt::DisplayRole).toString();
}

void MaterialSelectDialog::currentChanged(const QModelIndex &current)
{
    m_buttonBox->button(QDialogButtonBox::Ok)->setEnabled(isMaterial(current));
}

void MaterialSelectDialog::activated(const QModelIndex &index)
{
    if (isMaterial(index))
        accept();
}

bool MaterialSelectDialog::isMaterial(const QModelIndex &index) const
{
    return index.isValid() && !index.data(Qt::UserRole).isNull();
}

MaterialConductorSelectDialog::MaterialConductorSelectDialog(const QString &currentName, QWidget *parent)
    : MaterialSelectDialog(tr("Select conductor material"), MaterialConductorEngine::instance(), currentName, parent)
{
}

MaterialIronSelectDialog::MaterialIronSelectDialog(const QString &currentName, QWidget *parent)
    : MaterialSelectDialog(tr("Select Iron material"), MaterialIronEngine::instance(), currentName, parent)
{
}

MaterialMagnetSelectDialog::MaterialMagnetSelectDialog(const QString &currentName, QWidget *parent)
    : MaterialSelectDialog(tr("Select magnet material"), MaterialMagnetEngine::instance(), currentName, parent)
{
}
