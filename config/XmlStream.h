// Streams an open configuration file through expat in chunks of 1024 bytes.
#pragma once

#include <stdio.h>

#include <expat.h>

// Parses `fp` with `start` and Orlune::EndElement as the element handlers. A parse error logs
// `errorMessage` and ends the parse; elements handled before it keep their effect. Returns
// false on a parse error.
bool ParseConfigXml(FILE* fp, XML_StartElementHandler start, const char* errorMessage);
