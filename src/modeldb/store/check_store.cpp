// SPDX-License-Identifier: MIT
#include "modeldb/store/check_store.h"

#include <string>

#include "base/text/utf8_text.h"
#include "modeldb/database/CDatabase.h"
#include "modeldb/store/store_query.h"

namespace {

using store_query::Done;

constexpr std::size_t kMostFaults = 100;

/** A question whose every row is a fault: its words before, between and behind up to three numbers. */
struct CQuestion {
    std::string_view sql;
    std::string_view words[4];
};

constexpr CQuestion kQuestions[] = {
    {"SELECT g.id, g.model_count, count(m.key) FROM model_groups g LEFT JOIN models m ON m.group_id = g.id "
     "GROUP BY g.id, g.model_count HAVING g.model_count <> count(m.key) ORDER BY g.id",
     {"group ", " counts ", " models and has ", ""}},
    {"SELECT b.id, b.stored, CAST(coalesce(sum(length(p.data)), 0) AS BIGINT) FROM blobs b "
     "LEFT JOIN blob_parts p ON p.blob = b.id WHERE b.sha256 IS NOT NULL "
     "GROUP BY b.id, b.stored HAVING b.stored <> coalesce(sum(length(p.data)), 0) ORDER BY b.id",
     {"bytes ", " should be ", " long and are ", ""}},
    {"SELECT b.id, b.stored, b.size FROM blobs b WHERE b.sha256 IS NOT NULL "
     "AND NOT EXISTS(SELECT 1 FROM models WHERE blob = b.id) AND NOT EXISTS(SELECT 1 FROM models WHERE "
     "preview = b.id) "
     "AND NOT EXISTS(SELECT 1 FROM textures WHERE blob = b.id) ORDER BY b.id",
     {"bytes ", " (", " of ", ") belong to nothing"}},
};

CStatus Ask(CDatabase& database, const CQuestion& question, CCheckReport& report) {
    return Done(database.Run(question.sql, {}, [&](const CDbRow& row) -> CStatus {
        std::string fault(question.words[0]);
        for (int i = 0; i < 3; ++i) fault += std::to_string(row.Int(i)) + std::string(question.words[i + 1]);
        NoteFault(report, std::move(fault));
        return CDone{};
    }));
}

CStatus CheckFile(CDatabase& database, bool isFull, CCheckReport& report) {
    const std::string_view pragma = isFull ? "PRAGMA integrity_check(100)" : "PRAGMA quick_check(100)";
    CStatus done = Done(database.Run(pragma, {}, [&](const CDbRow& row) -> CStatus {
        // It may quote what is in the file.
        if (row.Text(0) != "ok") NoteFault(report, utf8_text::Printable(row.Text(0), ' '));
        return CDone{};
    }));
    if (!done) return done;
    return Done(database.Run("PRAGMA foreign_key_check", {}, [&](const CDbRow& row) -> CStatus {
        NoteFault(report, "row " + std::to_string(row.Int(1)) + " of " + std::string(row.Text(0)) +
                              " refers to nothing in " + std::string(row.Text(2)));
        return CDone{};
    }));
}

CStatus Count(CDatabase& database, CCheckReport& report) {
    return Done(database.Run(
        "SELECT (SELECT count(*) FROM model_groups), (SELECT count(*) FROM models), "
        "(SELECT count(*) FROM blobs WHERE sha256 IS NOT NULL), "
        "(SELECT CAST(coalesce(sum(stored), 0) AS BIGINT) FROM blobs WHERE sha256 IS NOT NULL)",
        {}, [&](const CDbRow& row) -> CStatus {
            const auto number = [&](int column) { return static_cast<std::uint64_t>(row.Int(column)); };
            report.groups = number(0);
            report.models = number(1);
            report.blobs = number(2);
            report.storedBytes = number(3);
            return CDone{};
        }));
}

}  // namespace

void NoteFault(CCheckReport& report, std::string fault) {
    ++report.faultCount;
    if (report.faults.size() < kMostFaults) report.faults.push_back(std::move(fault));
}

CStatus CheckTables(CDatabase& database, bool isFull, CCheckReport& report) {
    if (database.Engine() == CDatabase::EEngine::Sqlite)
        if (CStatus checked = CheckFile(database, isFull, report); !checked) return checked;
    // What follows would stumble over a file that is broken itself.
    if (report.faultCount > 0) return CDone{};
    for (const CQuestion& question : kQuestions)
        if (CStatus asked = Ask(database, question, report); !asked) return asked;
    return Count(database, report);
}
