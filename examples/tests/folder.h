#pragma once

#include <string>

/// The folder in which the test finds or writes its pictures: the program's argument.
extern std::string folder;
