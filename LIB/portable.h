// Localised strings of the plug-in's own bundle, by numeric identifier.
//
// An identifier's upper 16 bits are a table number and its lower 16 bits an index; the key in
// the bundle's Localizable.strings is "table,index" ("index" alone for table 0). A key without
// translation comes back as the key text itself. Thread: host's main thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

// The localised string (caller releases it), or null when the platform returned nothing.
CFStringRef CopyPlugInStringResource(int id);
// Fills `dest` (destSize UTF-16 units including the terminator); null when destSize is 0.
unsigned short* PlugIn_GetStringResource(int id, unsigned short* dest, short destSize);
// Fills `dest` (destSize bytes including the terminator) in the application's text encoding.
char* PlugIn_GetStringResource(int id, char* dest, short destSize);
// The byte form for table and index; returns the length placed in `dest`.
short LoadIndString(short table, short index, char* dest, short destSize);
