#include "tests/unit/settings_cases.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace zvonivec {

namespace {

std::string bytesOf(const QJsonValue& text) {
    return text.toString().toLatin1().toStdString();
}

} // namespace

void expectTable(const SettingsTable& tested) {
    QFile file(QStringLiteral(TEST_DATA "/ini_cases.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
    ASSERT_EQ(cases.size(), 33);
    std::size_t different = 0;
    const auto expect = [&](const std::string& name, const std::string& key,
                            const std::string& result, const std::string& inTable) {
        const auto difference = std::ranges::find_if(
            tested.differences, [&](const SettingsTable::Difference& candidate) {
                return candidate.name == name && candidate.key == key;
            });
        if (difference == tested.differences.end()) {
            EXPECT_EQ(result, inTable) << key;
        } else {
            ++different;
            EXPECT_EQ(result, difference->result) << key << ": " << difference->reason;
            EXPECT_NE(result, inTable) << key << ": no longer a difference";
        }
    };
    for (const auto& value : cases) {
        const QJsonObject row = value.toObject();
        const std::string name = row["name"].toString().toStdString();
        SCOPED_TRACE(name);
        const std::string bytes = bytesOf(row["file"]);
        if (row["kind"].toString() == QStringLiteral("read")) {
            const QJsonObject values = row["values"].toObject();
            EXPECT_FALSE(values.isEmpty());
            for (auto entry = values.begin(); entry != values.end(); ++entry) {
                const std::string key = entry.key().toStdString();
                expect(name, key, tested.read(bytes, key), bytesOf(entry.value()));
            }
        } else {
            SettingsTable::Writes writes;
            for (const auto& pair : row["writes"].toArray()) {
                writes.emplace_back(bytesOf(pair.toArray()[0]), bytesOf(pair.toArray()[1]));
            }
            expect(name, {}, tested.written(bytes, writes), bytesOf(row["after"]));
        }
    }
    EXPECT_EQ(different, tested.differences.size()) << "not all names are the table's";
}

void SettingsFormat::putOrRemove(const std::string& bytes) const {
    if (bytes.empty()) {
        QFile::remove(QString::fromStdString(path_));
    } else {
        put(bytes);
    }
}

SettingsTable SettingsFormat::ofModDeklarace() const {
    return {.read =
                [this](const std::string& file, const std::string& key) {
                    putOrRemove(file);
                    return read(key);
                },
            .written =
                [this](const std::string& file, const SettingsTable::Writes& writes) {
                    putOrRemove(file);
                    for (const auto& [key, value] : writes) {
                        write(key, value);
                    }
                    return bytes();
                },
            .differences = {}};
}

} // namespace zvonivec
