#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <span>

class CMaskEdit;
class OrvGeoStaticDataBase;
struct PrjParamBlock;
class QComboBox;
class QLabel;
class QLineEdit;
class QWidget;

// The toolbox the wizard pages and the editor share: the program and common data folders,
// the method lists, the rows of numeric parameter edits, value formats and message texts.
//
// Parameter rows are a label and a masked edit each, kMaxRows of them; a null entry is a row
// without that control.
class WzdUtility {
public:
    static constexpr int kMaxRows = 9;
    using LabelRows = std::span<QLabel* const, std::size_t{kMaxRows}>;
    using EditRows = std::span<CMaskEdit* const, std::size_t{kMaxRows}>;

    // Reads ORV.ini of the program-data folder through the library's ReadDataPaths
    // (util/CommonFolders.h), section DATA_PATH_SECTION:
    //   common data folder = DataRoot + "/Projects Common Files/" while UseDefaultCommonPath
    //                        is true or absent; else CommonPath + "/" (DataRoot + "/" when
    //                        there is no CommonPath entry)
    //   data folder (out)  = DataRoot + "/" + DataFolder + "/"
    //   terrain model folder = TerrainModelPath + "/", else the data folder +
    //                        "DigitalTerrainModel/"
    // Separators: where the folders are written with '\' on Windows ("\Projects Common
    // Files", "General\Geoidmodels\Denmark\") this system writes '/'. Values from ORV.ini
    // may use '\' or '/'; the folders come back with '/' only, cleaned of doubled
    // separators, and end in one '/'. False, out untouched and the folders empty, when the
    // program path, the root program-data folder or the settings file is missing.
    bool GetCommonFolders(QString& dataFolder);
    // The folder of the running program (ending in a separator), its file name without the
    // extension, and the common data and terrain model folders (ending in a separator) of
    // the last GetCommonFolders.
    QString GetProgramFolder() const { return m_programFolder; }
    QString GetProgramFileName() const { return m_programFileName; }
    QString GetCommonDataFolder() const { return m_commonDataFolder; }
    QString GetTerrainModelFolder() const { return m_terrainModelFolder; }

    // The datum transformation methods of the static data, the first selected.
    void FillMethodList(OrvGeoStaticDataBase* staticData, QComboBox* list);
    // Refills the list and selects method; index gets its index. False without static data
    // or list.
    bool SelectDtfMethod(OrvGeoStaticDataBase* staticData, QComboBox* list, const QString& method,
                         int& index);
    // Narrows the list to the family of the selected method (selection + shift is the index
    // in the full list): 0 alone, 1 and 2, or 3 and 4. Returns the new shift.
    int ReduceDtfMethodList(OrvGeoStaticDataBase* staticData, QComboBox* list, int shift);
    // The projection methods of the static data, the first selected; names gets them.
    bool FillPrjMethodList(OrvGeoStaticDataBase* staticData, QComboBox* list, QStringList& names);

    // Empties and hides the first count rows (at most kMaxRows): no label, no mask,
    // "0.000000". False when one of these rows lacks its label or its edit (the others are
    // still reset).
    bool ResetParameterRows(LabelRows labels, EditRows edits, int count);
    // Datum transformation values, as many as there are both edits and values: seven with six
    // decimals, seven rates with eight, then three decimals.
    void ShowValues(std::span<QLineEdit* const> edits, std::span<const double> values);

    // Lays out the rows of a projection method: one row per parameter, labelled with its
    // name; parameters of type 3 get no row; angle rows (types 1, 2) show the angle text
    // with an angle mask; scale rows (type 4) show "1.000000" when no value is given.
    // Unused rows are hidden. Returns the number of rows used (also RowCount()).
    int LayoutParameterRows(LabelRows labels, EditRows edits, const QStringList& names,
                            const QStringList& values, const QList<unsigned>& types);
    int RowCount() const { return m_rowCount; }
    // Shows a text as a row formats it (an angle text in an angle row's mask, a plain text in
    // a row without one).
    static void ShowRowText(CMaskEdit* edit, const QString& text);
    // Per used row: the parameter it shows (index into the names) and its type.
    QList<int> RowParams() const { return m_rowParams; }
    QList<unsigned> RowTypes() const { return m_rowTypes; }
    // The label of a parameter row and the mask of a row type.
    static QString RowLabel(const QString& paramName);
    static QString MaskForType(unsigned type);
    // Reads the used rows back as numbers (angles in degrees). A row that is no number,
    // and a scale factor not bigger than 0.8, are refused with a message (parent: the
    // message's owner); the failing row is focused.
    bool ReadParameterRows(EditRows edits, QList<double>& numbers, QWidget* parent);

    // The parameters of a projection method with their default values ("%f" texts), as
    // LayoutParameterRows takes them; empty lists for an unknown method.
    static void MethodDefaultParameters(const QString& methodName, QStringList& names,
                                        QStringList& values, QList<unsigned>& types);
    // The parameters for SetProjectionParameters, as the rows of the last layout show them:
    // every parameter of the layout (those without a row with their values as laid out),
    // each row's parameter with the row's text and number (rowNumbers from
    // ReadParameterRows); the UTM zone and hemisphere parameters take the lists' texts.
    void CollectParameters(EditRows edits, const QList<double>& rowNumbers,
                           const QStringList& names, const QStringList& values,
                           const QString& zoneText, const QString& hemisphereText,
                           PrjParamBlock& block, QStringList& texts) const;

    // Angles: the text without mask placeholders through StringToGeo (0.0 when it is no
    // angle); formatting through FormatGeogs as latitude (kind 10) or longitude (kind 11).
    static double ReadAngle(const CMaskEdit* edit);
    static QString FormatLatitude(double value);
    static QString FormatLongitude(double value);
    static QString FormatAngle(double value, int kind);

    // The shared rotation unit of the datum transformation values (unit category 28 of the
    // process's unit converter): the method's rotation sign (+1.0 or -1.0) between the values
    // as held and as shown, in arc seconds.
    static void SetRotationUnit(double sign);
    // A text for a group box title: a group box shows '&' as a shortcut mark unless doubled.
    static QString GroupBoxTitle(QString text);

    // The text of a string table entry; empty for an unknown id.
    static QString LoadMessage(int id);
    static QString LoadMessage(const QString& id);

private:
    QString m_programFolder;
    QString m_programFileName;
    QString m_commonDataFolder;
    QString m_terrainModelFolder;
    int m_rowCount = 0;
    QList<int> m_rowParams;
    QList<unsigned> m_rowTypes;
};
