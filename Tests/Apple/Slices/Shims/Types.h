// BOOL in the types of methods: one letter there, another here.

#pragma once

inline constexpr char boolThere = 'B';
inline constexpr char boolHere = 'C';

const char* withBool(const char* types, char from, char to);
