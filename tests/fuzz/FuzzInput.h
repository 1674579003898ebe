#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Helpers shared by the fuzz harnesses. A harness gets raw bytes; the texts a user can type
// or a file can hold are made of them in more than one encoding.
namespace FuzzInput {

// The bytes as a text: UTF-8 when the first byte is even, UTF-16 (native order) when odd,
// so that both invalid UTF-8 and any UTF-16 code unit (lone surrogates included) occur.
inline QString Text(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return QString();
    if (data[0] % 2 == 0)
        return QString::fromUtf8(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    const std::size_t units = (size - 1) / 2;
    QString text(qsizetype(units), Qt::Uninitialized);
    for (std::size_t i = 0; i < units; ++i)
        text[qsizetype(i)] = QChar(char16_t(data[1 + 2 * i] | (data[2 + 2 * i] << 8)));
    return text;
}

// A broken promise of the code under test: reported like a crash, so that libFuzzer keeps
// the input.
[[noreturn]] inline void Fail(const char* what) {
    std::fprintf(stderr, "fuzz property violated: %s\n", what);
    std::abort();
}

inline void Check(bool ok, const char* what) {
    if (!ok)
        Fail(what);
}

} // namespace FuzzInput
