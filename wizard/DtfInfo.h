#pragma once

#include <QString>

#include <memory>

// Snapshot of a datum transformation as a page loaded it: its method and its first eight
// values (three shifts, three rotations, scale, rate of shift X). The parameters page
// compares the edited values with it to tell whether the user changed anything.
class DtfInfo {
public:
    static constexpr unsigned kValueCount = 8;

    DtfInfo() = default;
    virtual ~DtfInfo() = default;
    DtfInfo(const DtfInfo&) = delete;
    DtfInfo& operator=(const DtfInfo&) = delete;

    // Keeps the method and copies the first eight of values (which must hold eight).
    void Set(const QString& methodName, const double* values);
    void Clear();

    QString GetMethodName() const { return m_methodName; }
    unsigned GetCount() const { return m_count; }
    // Null before the first Set.
    const double* GetValues() const { return m_values.get(); }

    // True when the method (exactly) or one of the eight values (exactly) differs; false
    // while no snapshot was taken.
    bool Differs(const QString& methodName, const double* values) const;

private:
    QString m_methodName;
    unsigned m_count = 0;
    std::unique_ptr<double[]> m_values;
};
