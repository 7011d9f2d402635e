#!/usr/bin/env bash
# What a clerk does, through jurnalctl: opens the file, marks an absence, sees it in the month of
# the group, looks at the grades, compares the specialities and makes the month's statement.
#   scripts/tour.sh JURNALCTL FILE
set -euo pipefail
ctl=$1 journal=$2

# The first cell of a query's result.
first() { "$ctl" sql "$journal" "$1" --csv | sed -n 2p | tr -d '"\r'; }

"$ctl" check "$journal"
"$ctl" tables "$journal"
group=$(first "SELECT TOP 1 UROKI.IDG FROM UROKI ORDER BY UROKI.ID;")
discipline=$(first "SELECT TOP 1 UROKI.IDD FROM UROKI WHERE UROKI.IDG=$group ORDER BY UROKI.ID;")
student=$(first "SELECT TOP 1 ID FROM SPSTUD WHERE IDG=$group AND (prikazOtch=\"\" OR prikazOtch IS NULL) ORDER BY FAM, IM, OTCH, ID;")
lesson="FROM UROKI WHERE IDG=$group AND IDD=$discipline ORDER BY DAT, UR;"
year=$(first "SELECT TOP 1 Year(DAT) AS Y $lesson")
month=$(first "SELECT TOP 1 Month(DAT) AS M $lesson")
day=$(first "SELECT TOP 1 Day(DAT) AS D $lesson")
number=$(first "SELECT TOP 1 UR AS N $lesson")
date=$(printf '%04d-%02d-%02d' "$year" "$month" "$day")

echo
echo "Отметка пропуска: студент $student, дисциплина $discipline, $date, занятие $number"
"$ctl" mark "$journal" --student "$student" --discipline "$discipline" --date "$date" --lesson "$number"
"$ctl" attendance "$journal" --group "$group" --discipline "$discipline" --month "$month" --year "$year"
echo
echo "Оценки за месяцы учебного года и итоговые"
"$ctl" grades "$journal" --group "$group" --discipline "$discipline" --mode monthly
echo
echo "Места специальностей за учебный год"
"$ctl" ranking "$journal" --from "$(first "SELECT DATN FROM RASP;")" \
    --to "$(first "SELECT DATK FROM RASP;")" --grades final
echo
statement=$(mktemp -u --suffix=.xlsx)
echo "Ведомость посещаемости группы: $statement"
"$ctl" report attendance "$journal" --group "$group" --month "$month" --year "$year" -o "$statement"
