#pragma once

namespace test
{

/// How often the system's authorities have been read in this program.
int readsOfSystemAuthorities();

} // namespace test
