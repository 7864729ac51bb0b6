// An empty Qt program that makes the request for the strip's row every 50 ms, or as many as its argument
// says: the floor that idle_bench measures the application against.

#include "desktop/x11/connection.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <cstdlib>

int main(int argc, char** argv) {
    constexpr int kStripWidth = 80;
    QApplication application(argc, argv);
    const int periodMs = argc > 1 ? std::atoi(argv[1]) : 50;
    const QWidget window;
    const auto connection = glimra::desktop::Connection::open({});
    if (!connection)
        return EXIT_FAILURE;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&connection] {
        std::free(xcb_get_image_reply(connection->xcb(),
                                      xcb_get_image(connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                                    connection->root(), 2, 0, kStripWidth, 1, ~0U),
                                      nullptr));
    });
    timer.start(periodMs);
    return QApplication::exec();
}
