// SPDX-License-Identifier: MIT

#pragma once

// The topics under which help lists the commands; one bit each in CommandEntry::topics.

constexpr int kOtros = 0x1;
constexpr int kInfo = 0x2;
constexpr int kFicheros = 0x4;
constexpr int kEntorno = 0x8;
constexpr int kMemoria = 0x10;
constexpr int kListaMemoria = 0x20;
constexpr int kProcesos = 0x40;
constexpr int kSenales = 0x80;
constexpr int kSFMemoria = 0x100;
constexpr int kSinTopic = 0;
