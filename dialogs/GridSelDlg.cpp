#include "dialogs/GridSelDlg.h"

#include "api/GeoKeys.h"
#include "engine/ModelFiles.h"
#include "util/CommonFolders.h"
#include "wizard/WzdUtility.h"

#include "ui_GridSelDlg.h"

#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QPushButton>

namespace {

const QString kTerrainModelComponent = QStringLiteral("DigitalTerrainModel");
const QString kModelsKey = QStringLiteral("geoid_models");
// Left out of the vertical datum models whatever geoid.inf says.
const QString kExcludedModel = QStringLiteral("GEOID96");
// geoid.inf is a few lines; the cap keeps a stray huge file from being read whole.
constexpr qint64 kMaxInfBytes = 1024 * 1024;
// ".grd", ".bin": what the country model lists leave off their file names
constexpr int kExtensionLength = 4;

// The terrain model folder with its "DigitalTerrainModel" component (the last one, letter
// case ignored) replaced by name; empty when there is no such component.
QString besideTerrainModels(const QString& terrainModelFolder, const QString& name) {
    QStringList parts = terrainModelFolder.split(QLatin1Char('/'));
    for (qsizetype i = parts.size() - 1; i >= 0; --i) {
        if (parts[i].compare(kTerrainModelComponent, Qt::CaseInsensitive) == 0) {
            parts[i] = name;
            return parts.join(QLatin1Char('/'));
        }
    }
    return {};
}

// relative below the common data folder; folder names match without regard to letter case
// (as the engine looks for the model files). Empty when it is missing.
QString belowCommon(const QString& commonFolder, const QString& relative) {
    if (commonFolder.isEmpty())
        return {};
    return ModelFiles::ResolveNoCase(commonFolder, relative);
}

// The names of every "geoid_models = a,b,..." line of geoid.inf, in order; the names are
// trimmed and empty ones skipped.
QStringList readGeoidModels(const QString& path) {
    QStringList models;
    QFile file(path);
    if (path.isEmpty() || !QFileInfo(path).isFile() ||
        !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return models;
    const QStringList lines = QString::fromUtf8(file.read(kMaxInfBytes)).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        qsizetype start = 0;
        while (start < line.size() && line[start].isSpace())
            ++start;
        if (QStringView(line).mid(start, kModelsKey.size()) != kModelsKey)
            continue;
        const qsizetype equals = line.indexOf(QLatin1Char('='), start);
        if (equals < 0)
            continue;
        const QStringList names = line.mid(equals + 1).split(QLatin1Char(','));
        for (const QString& name : names) {
            const QString model = name.trimmed();
            if (!model.isEmpty() && model != kExcludedModel)
                models << model;
        }
    }
    return models;
}

// The files of a country folder with one extension, listed without it.
QStringList countryModels(const QString& commonFolder, const QString& country,
                          const QString& extension) {
    const QString folder =
        belowCommon(commonFolder, QStringLiteral("General/GeoidModels/") + country);
    QStringList names = ListFolderFiles(folder, QStringLiteral("*.") + extension);
    for (QString& name : names)
        name.chop(kExtensionLength);
    return names;
}

} // namespace

GridSelDlg::GridSelDlg(int typeIndex, const QString& file, QWidget* parent)
    : Dialog(parent), m_ui(std::make_unique<Ui::GridSelDlg>()), m_typeIndex(typeIndex),
      m_file(file) {
    m_ui->setupUi(this);
    connect(m_ui->fileList, &QListWidget::itemSelectionChanged, this, &GridSelDlg::OnSelChange);
    connect(m_ui->okButton, &QPushButton::clicked, this, &GridSelDlg::accept);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &GridSelDlg::reject);
}

GridSelDlg::~GridSelDlg() = default;

bool GridSelDlg::OnInitDialog() {
    Dialog::OnInitDialog();
    m_ui->fileList->clear();
    m_ui->fileList->addItems(ListEntries());
    for (int row = 0; row < m_ui->fileList->count(); ++row) {
        QListWidgetItem* item = m_ui->fileList->item(row);
        if (item->text() == m_file) {
            m_ui->fileList->setCurrentItem(item);
            m_ui->fileList->scrollToItem(item);
            break;
        }
    }
    return true;
}

QStringList GridSelDlg::ListEntries() const {
    WzdUtility utility;
    QString dataFolder;
    // A failed lookup leaves the folders empty, and every list below then stays empty.
    utility.GetCommonFolders(dataFolder);
    const QString common = utility.GetCommonDataFolder();
    switch (m_typeIndex) {
    case GeoidKey::GeoidModel:
        return ListFolderFiles(
            besideTerrainModels(utility.GetTerrainModelFolder(), QStringLiteral("Geoid-Model")));
    case GeoidKey::GridModel:
        return ListFolderFiles(besideTerrainModels(utility.GetTerrainModelFolder(),
                                                   QStringLiteral("Geoid-Model-Grid")));
    case GeoidKey::ChartDatum:
        return readGeoidModels(belowCommon(common, QStringLiteral("vdatum/core/geoid.inf")));
    case GeoidKey::Swen:
        return countryModels(common, QStringLiteral("Sweden"), QStringLiteral("grd"));
    case GeoidKey::Nn2000:
        return countryModels(common, QStringLiteral("Norway"), QStringLiteral("bin"));
    default:
        return {};
    }
}

void GridSelDlg::OnSelChange() {
    const QList<QListWidgetItem*> selected = m_ui->fileList->selectedItems();
    if (!selected.isEmpty())
        m_file = selected.first()->text();
}
