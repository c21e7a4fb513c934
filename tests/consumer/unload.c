// usage: unload LIBRARY
// Loads the shared library, has it fill a record, unloads it, and reads the record.

#include <dlfcn.h>
#include <stdio.h>

#include "Zem/Os/ZemTime.h"

typedef ZemGregorianTime* ConstructUTC(ZemGregorianTime* gt, ZemTime systemTime);

int main(int argc, char** argv)
{
    ZemGregorianTime gt;
    void* library = argc == 2 ? dlopen(argv[1], RTLD_NOW) : NULL;
    void* symbol = library != NULL ? dlsym(library, "ZemGregorianTimeConstructUTC") : NULL;
    if (symbol == NULL) {
        fprintf(stderr, "usage: unload LIBRARY\n");
        return 2;
    }
    ((ConstructUTC*)symbol)(&gt, 0);
    dlclose(library);
    printf("%s\n", gt.tm.tm_zone);
    return 0;
}
