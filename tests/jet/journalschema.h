#pragma once

#include "jet/sql/translation.h"
#include "jet/text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The tables of a journal file, as far as queries see them.
class JournalSchema final : public jet::sql::SchemaLookup
{
public:
    struct Table
    {
        std::string name;
        std::vector<jet::sql::SchemaColumn> columns;
    };

    JournalSchema()
    {
        add("EXAM", "IDE:c ID:l IDD:l OCEN:l TIME:i");
        add("MONTH", "MN:y NAIM:t");
        add("POS", "ID:l uv:y nuv:y dat:d UR:i IDD:l IDDG:l");
        add("RASP", "IDR:c SelKab:b LockOR:b DATR:d URNUL:b PrZap:b NAIM:t DIR_D:t DIR_FIO:t "
                    "OTV_D:t OTV_FIO:t DIR_P:b OTV_P:b TIME_P:b DEL_STR:b ULAST:b UDAY:i "
                    "NO_CALC:b ADR:t AUD_GR:b MNJ:y AvtSave:b Uroki:b appMajor:l appMinor:l "
                    "appRevision:l DATN:d DATK:d");
        add("SPGRUP", "IDG:c IDO:l MEMO:t IDP:l IG:i KURS:i FINAL:b NAIM:t IDF:l IDV:l");
        add("SPNAGR", "IDN:c IDP:l IDG:l IDD:l IDT:l CHSEM:i DATNN:d DATKK:d CH:i IDGG:y MEMO:t "
                      "PRAKT:b WITHD:b IDZ:l IDNN:l NO_CALC:b IDA:l PO_ZAM:b");
        add("SPOTD", "IDO:c SOKR:t KOD:t NAIM:t");
        add("SPPRED", "IDD:c KOD:t MEMO:t NAIM:t TRUD:i");
        add("SPPREP", "IDP:c MEMO:t TABNOM:t FAMIO:t IDK:l");
        add("SPSTUD", "ID:c IDG:l IDGG:l D_R:d DOC:t KURS:m POL:b FAM:t IM:t OTCH:t MEMO:t ADR:t "
                      "TEL:t prikazOtch:t prichOtch:t");
        add("UROKI", "ID:c DAT:d UR:i IDP:l IDG:l IDGG:y IDA:l IDD:l IDN:l IDR:l ZP:b MORE:b "
                     "HAND:b IDNN:l IDI:l");
        add("USP", "ID:l IDD:l OC:y DAT:d it:b TEK:b");
        add("USERS", "IDU:c NAIM:t ROLE:y PSSW:t");
        add("SPAUD", "IDT:c NAIM:t SOKR:t IT:i");
        add("SPKAUD", "IDA:c IDT:l MEMO:t IA:i KAUDI:t KOL:i TIM1:d TIM2:d");
        add("SPTIPZ", "IDZ:c NAIM:t MEMO:t");
        add("SPKAF", "IDK:c NAIM:t");
        add("HOLI", "IDH:c DAY:i MN:i NAIM:t");
        add("SPPRIH", "IDI:c NAIM:t TABEL:t ALLDAY:b RABDAY:b");
        add("UR_TIME", "IDUR:l NAIM:t");
        add("SPTIPG", "IDF:c NAIM:t MEMO:t");
        add("SPRASP", "IDR:c DEY:b DAT1:d DAT2:d MEMO:t");
        add("SPVID", "IDV:c NAIM:t MEMO:t");
        add("SPBALL", "OCEN:i NAIMOC:t");
    }

    const std::vector<Table>& tables() const { return m_tables; }

    const std::vector<jet::sql::SchemaColumn>* columns(std::string_view table) override
    {
        const Table* found = find(table);
        return found ? &found->columns : nullptr;
    }
    std::string canonicalName(std::string_view table) override { return find(table)->name; }

    // Columns as `name:type`: y byte, i integer, l long, c counter, b Boolean, d date, t text,
    // m memo, f double, $ currency.
    void add(std::string name, std::string_view columns)
    {
        Table table{std::move(name), {}};
        while (!columns.empty()) {
            const std::size_t colon = columns.find(':');
            const char type = columns[colon + 1];
            table.columns.push_back(
                {std::string(columns.substr(0, colon)), typeOf(type), type == 'c'});
            columns.remove_prefix(std::min(colon + 3, columns.size()));
        }
        m_tables.push_back(std::move(table));
    }

private:
    const Table* find(std::string_view name) const
    {
        for (const Table& table : m_tables)
            if (jet::sameName(table.name, name))
                return &table;
        return nullptr;
    }

    static jet::FieldType typeOf(char letter)
    {
        using jet::FieldType;
        switch (letter) {
        case 'y':
            return FieldType::Byte;
        case 'i':
            return FieldType::Integer;
        case 'b':
            return FieldType::Boolean;
        case 'd':
            return FieldType::Date;
        case 't':
            return FieldType::Text;
        case 'm':
            return FieldType::Memo;
        case 'f':
            return FieldType::Double;
        case '$':
            return FieldType::Currency;
        default:
            return FieldType::Long;
        }
    }

    std::vector<Table> m_tables;
};
