#pragma once

#include <QString>

struct pj_ctx;

// The operation PROJ itself would use from WGS 84 (EPSG:4326) to an EPSG projected system,
// found the way cs2cs finds it: every authority, operations whose grids are missing left
// out, ranked by PROJ for the system's area of use; the first one.
struct ProjChoice {
    bool found = false;
    QString name;        // PROJ's name of the operation
    int helmertCode = 0; // the one EPSG Helmert transformation it applies; 0 for none
    // Why helmertCode is 0 although a transformation is applied: "a transformation by the
    // method "NTv2"", "a chain of 2 transformations", "a ballpark transformation". Empty for
    // a conversion alone (a system on WGS 84) and for a Helmert transformation.
    QString otherKind;
};

class ProjChooser {
public:
    ProjChooser();
    ~ProjChooser();
    ProjChooser(const ProjChooser&) = delete;
    ProjChooser& operator=(const ProjChooser&) = delete;

    ProjChoice For(int crsCode);
    // proj.db of PROJ's search path.
    QString DatabasePath() const;

private:
    pj_ctx* m_ctx = nullptr;
};
