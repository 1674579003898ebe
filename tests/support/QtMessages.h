#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

// Every Qt warning, critical or fatal message during a test fails that test, unless a
// QtWarningsExpected is alive whose text the message contains: then it is only counted.
void InstallQtMessageCheck();

class QtWarningsExpected {
public:
    explicit QtWarningsExpected(const QString& textContained);
    ~QtWarningsExpected();
    QtWarningsExpected(const QtWarningsExpected&) = delete;
    QtWarningsExpected& operator=(const QtWarningsExpected&) = delete;
    // The expected messages seen so far.
    QStringList Seen() const { return m_seen; }

    // True when an expectation alive takes the message.
    static bool Absorb(const QString& message);

private:
    QString m_text;
    QStringList m_seen;
    QtWarningsExpected* m_outer;
};
