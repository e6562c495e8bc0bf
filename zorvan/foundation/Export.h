#pragma once

/// Marks the classes of the library's boundary. Everything else is compiled with hidden visibility.
#define ZORVAN_IPP_API __attribute__((visibility("default")))
