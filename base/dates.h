// SPDX-License-Identifier: MIT

#pragma once

#include <ctime>

// Dates as text, in local time. Each function keeps the text of the last date that it was asked for, until
// its next call: neighbours in a list mostly share theirs.
//
// One rule for all of them: a year is shown whole, whatever its digits; a date so far off that its year is no
// int is shown as its bare number of seconds.

/// Finds out the time zone anew. To be called once by every command that shows dates, before the first of
/// them: it may ask the system for the zone's file, and the texts below go by what was found last.
void LeerZonaHoraria();

const char *Fecha2(time_t t);        ///< of a file: 2024/03/05-14:07
const char *ConvertirDia(time_t t);  ///< 05/03/2024
const char *ConvertirHora(time_t t); ///< 14:07:09
const char *fecha(time_t t);         ///< of a process: 2024/03/05 14:07:9
const char *ponFecha(time_t t);      ///< of a block: Mar  5 14:07
const char *TextoFecha(time_t t);    ///< of a file in a block: Tue Mar  5 14:07:09 2024
