// A host whose objects end where untouchable memory begins: a library that thinks them larger than
// the headers that it was built with say, to read or to write, ends it.
#include <QtWidgets/QApplication>

#include <Parloquin/Parloquin.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <new>

#if defined(PARLOQUIN_VERSION) // not in 1.0
static_assert(PARLOQUIN_VERSION_CHECK(1, 10, 0) > PARLOQUIN_VERSION_CHECK(1, 9, 255));
static_assert(PARLOQUIN_VERSION >= PARLOQUIN_VERSION_CHECK(1, 1, 0));
#endif

namespace {

void *roomAtTheEdge(std::size_t size)
{
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    void *const pages =
        ::mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    auto *const edge = static_cast<char *>(pages) + page;
    return pages != MAP_FAILED && ::mprotect(edge, page, PROT_NONE) == 0 ? edge - size : nullptr;
}

/// Opens a container of that kit. \return the look of its status area; -1 where something is amiss
int styleOf(Parloquin &kit)
{
    class Deaf : public ParloquinDelegate {
        void verificationDidSucceed(const QString &) override { }
        void verificationDidFail(ParloquinError) override { }
    };
    const std::unique_ptr<ParloquinViewController> container(kit.viewControllerForLogin());
    const auto delegate = std::make_shared<Deaf>();
    container->setKitDelegate(delegate);
    container->show();
    QApplication::processEvents();
    return container->kitDelegate() == delegate && container->isVisible()
        ? container->property("preferredStatusBarStyle").toInt()
        : -1;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    auto *const plain = new (roomAtTheEdge(sizeof(Parloquin))) Parloquin;
    const int unset = styleOf(*plain);
    const auto *const options = new (roomAtTheEdge(sizeof(ParloquinOptions))) ParloquinOptions(
        ParloquinEnvironment::prod, false, { QColor(Qt::red), ParloquinStatusBarStyle::standard });
    auto *const kit = new (roomAtTheEdge(sizeof(Parloquin))) Parloquin(*options);
    const int given = styleOf(*kit);
    std::fprintf(
        stderr, "light: %d, dark: %d, version: %.1f\n", unset, given, ParloquinVersionNumber);
    return unset == 1 && given == 0 && ParloquinVersionNumber == 1.0 ? 0 : 1;
}
