// Holds a bridge until its standard input ends: holdbridge <node>

#include <cstdio>

#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

int main(int argc, char **argv)
{
    const int node = argc > 1 ? open(argv[1], O_RDWR | O_NOCTTY) : -1;
    unsigned int interface = 0;
    if (node < 0 || ioctl(node, USBDEVFS_CLAIMINTERFACE, &interface) != 0)
        return 1;
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
