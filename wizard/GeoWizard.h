#pragma once

#include "api/GeoTypes.h"
#include "dialogs/DialogOwner.h"
#include "pages/WIZPage0.h"
#include "pages/WIZPage1.h"
#include "pages/WIZPage10.h"
#include "pages/WIZPage11.h"
#include "pages/WIZPage12.h"
#include "pages/WIZPage13.h"
#include "pages/WIZPage2.h"
#include "pages/WIZPage3.h"
#include "pages/WIZPage4.h"
#include "pages/WIZPage5.h"
#include "pages/WIZPage6.h"
#include "pages/WIZPage7.h"
#include "pages/WIZPage8.h"
#include "pages/WIZPage9.h"
#include "platform/PropertySheet.h"

class OrvGeoCoordSysBase;
class OrvGeoDatabaseBase;
class OrvGeoStaticDataBase;
class QPainter;

// The coordinate-system wizard: a property sheet in wizard mode that owns its pages, the
// geodetic database and static-data objects every page works on, and the state through
// which the pages hand their choices to each other. It decides which pages are in the
// sheet, which wizard buttons are offered, paints the banner of every page and gives each
// page its page-number text.
class GeoWizard : public PropertySheet, public DialogOwner {
    Q_OBJECT
public:
    GeoWizard(const QString& caption, QWidget* parent = nullptr, unsigned selectPage = 0);
    ~GeoWizard() override;

    // Creates the library objects and takes the satellite ellipsoid; 0 when a factory
    // returned null (no page is initialised then).
    int OnInitDialog() override;

    // --- shared properties ---
    void SetDllType(const QString& dllType) { m_dllType = dllType; }
    QString GetDllType() const { return m_dllType; }
    void SetGroupName(const QString& name) { m_groupName = name; }
    QString GetGroupName() const { return m_groupName; }
    void SetSystemName(const QString& name) { m_systemName = name; }
    QString GetSystemName() const { return m_systemName; }
    void SetPreGroupName(const QString& name) { m_preGroupName = name; }
    // False (out untouched) while no pre-defined group is set.
    bool GetPreGroupName(QString& out) const;
    // newSystemName, when not empty, also goes into the name page's name field.
    void SetPreSysName(const QString& name, const QString& newSystemName);
    bool GetPreSysName(QString& out) const;
    // updateCheckBox: also set the name page's "Based on existing" check box.
    void SetPreSysStatu(bool based, bool updateCheckBox);
    bool GetPreSysStatu() const { return m_preSysStatu; }
    void SetNewSystemName(const QString& name) { m_newSystemName = name; }
    QString GetNewSystemName() const { return m_newSystemName; }
    void SetSrcElpName(const QString& name) { m_srcElpName = name; }
    QString GetSrcElpName() const { return m_srcElpName; }
    void SetDesElpName(const QString& name) { m_desElpName = name; }
    QString GetDesElpName() const { return m_desElpName; }
    void SetDtfOption(unsigned option) { m_dtfOption = option; }
    unsigned GetDtfOption() const { return m_dtfOption; }
    void SetPrjOption(unsigned option) { m_prjOption = option; }
    unsigned GetPrjOption() const { return m_prjOption; }
    void SetSelDtfName(const QString& name) { m_selDtfName = name; }
    QString GetSelDtfName() const { return m_selDtfName; }
    void SetDtfFromOldDtf(bool on) { m_dtfFromOldDtf = on; }
    bool GetDtfFromoldDtf() const { return m_dtfFromOldDtf; }
    void SetPrjFromOldPrj(bool on) { m_prjFromOldPrj = on; }
    bool GetPrjFromoldPrj() const { return m_prjFromOldPrj; }
    void SetPrjMdName(const QString& name) { m_prjMdName = name; }
    QString GetPrjMdName() const { return m_prjMdName; }
    void SetPrePrjName(const QString& name) { m_prePrjName = name; }
    QString GetPrePrjName() const { return m_prePrjName; }
    void SetInitDtf(bool on) { m_initDtf = on; }
    bool GetDtfInit() const { return m_initDtf; }
    void SetInitPrj(bool on) { m_initPrj = on; }
    bool GetPrjInit() const { return m_initPrj; }
    void SetInitUnit(bool on) { m_initUnit = on; }
    bool GetUnitInit() const { return m_initUnit; }
    void SetInitGroup(bool on) { m_initGroup = on; }
    bool GetInitGroup() const { return m_initGroup; }
    void SetDefaultUnit(const QString& unit) { m_defaultUnit = unit; }
    QString GetDefaultUnit() const { return m_defaultUnit; }
    void SetUnit(const QString& unit) { m_unit = unit; }
    QString GetUnit() const { return m_unit; }
    void SetGeoModStatu(bool on) { m_geoModStatu = on; }
    bool GetGeoModStatu() const { return m_geoModStatu; }
    void SetPosModStatu(bool on) { m_posModStatu = on; }
    bool GetPosModStatu() const { return m_posModStatu; }
    void SetNewPrjPage(bool on) { m_newPrjPage = on; }
    bool GetNewPrjPage() const { return m_newPrjPage; }
    void SetSelPrjUnitStatu(bool on) { m_selPrjUnitStatu = on; }
    bool GetSelPrjUnitStatu() const { return m_selPrjUnitStatu; }
    void SetGroupsAllowed(geodb_type groups) { m_groupsAllowed = groups; }
    geodb_type GetGroupsAllowed() const { return m_groupsAllowed; }
    bool HasPredefinedSystem() const { return m_hasPredefinedSystem; }
    OrvGeoCoordSysBase* GetCreatedCoordSys() const { return m_createdCoordSys; }
    OrvGeoDatabaseBase* GetGeoDatabase() const override { return m_geoDatabase; }
    OrvGeoStaticDataBase* GetGeoStatic() const override { return m_geoStatic; }
    // The pickers' view of the sheet: its source and destination ellipsoids.
    QString CurrentSatelliteEllipsoid() const override { return m_srcElpName; }
    QString CurrentLocalEllipsoid() const override { return m_desElpName; }

    // --- page flow ---
    // Page-set codes of ReSetPages.
    enum PageSetCode : int {
        PagesNotBased = 0,
        PagesBasedOnSystem = 1,
        PagesUseExistingDtf = 3,
        PagesNoDtf = 21,
        PagesNewDtf = 30,
        PagesNewDtfFromOld = 31,
        PagesUseExistingPrj = 7,
        PagesNewPrjFromOld = 71,
        PagesNewPrj = 72,
    };
    // Rebuilds the page list for a page-set code and makes the previously active index
    // active again. Codes of 73 and above, and unknown codes, leave the sheet without pages.
    void ReSetPages(int code);
    // Leaves the geoid model page out (or takes it in again) and rebuilds the default list.
    void SetSkipGeoid(bool skip);
    bool GetSkipGeoid() const { return m_skipGeoid; }

    // 0 Next; 1 Back and Finish; 2 Finish; 3 Back and Next; 4 Back; others change nothing.
    void SetWizardButtonByPage(unsigned state);
    void OnWizBack() override;
    void OnWizNext() override;

    // "<index + 1> of <count>" of a page.
    QString DisplayPageNumber(const PropertyPage* page) const;
    // Paints the banner of the current page: the caption, the etched separator under the
    // title and the title itself.
    void OnPaint(QPainter& dc, const QString& title);

    // --- creation and information texts ---
    // A coordinate system from the host's seven strings; owned by the wizard (see
    // GetCreatedCoordSys). Null when the factory or the definition fails.
    OrvGeoCoordSysBase* CreateCoordSys(QString s1, QString s2, QString s3, QString s4, QString s5,
                                       QString s6, QString s7);
    // The ellipsoid's information text without its heading line.
    QString DumpElpInfoText(const QString& ellipsoidName);
    // "Group: <group>\r\nSystem: <system>\r\n" of the pre-defined system.
    QString DumpPreSysInfoText();
    // The factor and description of the static data's current unit, one tab indented.
    QString DumpUnitInfoText();
    // level tabs (none for level 0 or less).
    static QString BuildIndentString(int level);

    // --- pages ---
    // WIZPage<number> for number 0..13, else null.
    WizardPage* GetWizardPage(int number);
    // The numbers of the pages in the sheet, in order.
    QList<int> PageNumbers() const;

private:
    void PagesSet();
    bool CreateBaseObjects();
    void removeAllPages();
    void clearHelpFlags();
    void addPages(const QList<int>& numbers);

    WIZPage0 m_page0;
    WIZPage1 m_page1;
    WIZPage2 m_page2;
    WIZPage3 m_page3;
    WIZPage4 m_page4;
    WIZPage5 m_page5;
    WIZPage6 m_page6;
    WIZPage7 m_page7;
    WIZPage8 m_page8;
    WIZPage9 m_page9;
    WIZPage10 m_page10;
    WIZPage11 m_page11;
    WIZPage12 m_page12;
    WIZPage13 m_page13;

    QString m_dllType;
    QString m_groupName;
    QString m_systemName;
    QString m_preGroupName;
    QString m_preSysName;
    bool m_preSysStatu = false;
    QString m_newSystemName;
    QString m_srcElpName;
    QString m_desElpName;
    unsigned m_dtfOption = 0;
    unsigned m_prjOption = 0xFFFFFFFFu;
    QString m_selDtfName;
    bool m_dtfFromOldDtf = false;
    bool m_prjFromOldPrj = false;
    QString m_prjMdName;
    QString m_prePrjName;
    bool m_initDtf = false;
    bool m_initPrj = false;
    bool m_initUnit = false;
    bool m_initGroup = false;
    QString m_defaultUnit = QStringLiteral("Meters");
    QString m_unit;
    bool m_geoModStatu = false;
    bool m_posModStatu = false;
    bool m_newPrjPage = false;
    bool m_selPrjUnitStatu = false;
    geodb_type m_groupsAllowed = GEODB_USER;
    bool m_hasPredefinedSystem = false;

    // page-set memory of ReSetPages
    bool m_dtfParamPageOnly = false;
    bool m_dtfTreePageOnly = false;
    bool m_noDtfPages = false;
    bool m_skipGeoid = false;

    OrvGeoCoordSysBase* m_createdCoordSys = nullptr;
    OrvGeoDatabaseBase* m_geoDatabase = nullptr;
    OrvGeoStaticDataBase* m_geoStatic = nullptr;
};
