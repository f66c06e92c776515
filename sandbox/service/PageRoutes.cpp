#include "sandbox/service/PageFiles.h"
#include "sandbox/service/Routes.h"

namespace sandbox {
namespace {
/// Nothing but what this port itself serves, in no frame of another's, and no text becomes markup.
constexpr auto policy = "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
                        "connect-src 'self'; base-uri 'none'; form-action 'none'; "
                        "frame-ancestors 'none'; require-trusted-types-for 'script'; "
                        "trusted-types 'none'";

const char *typeOf(const std::string &name)
{
    if (name.ends_with(".js"))
        return "text/javascript; charset=utf-8";
    if (name.ends_with(".css"))
        return "text/css; charset=utf-8";
    return name.ends_with(".svg") ? "image/svg+xml" : "text/html; charset=utf-8";
}
}

void routePage(Routes &routes)
{
    for (const auto &file : pageFiles())
        routes.get(file.name == "index.html" ? "/" : "/" + file.name,
            [&file](const httplib::Request &, httplib::Response &response) {
                response.set_header("Content-Security-Policy", policy);
                response.set_header("X-Content-Type-Options", "nosniff");
                response.set_header("Cross-Origin-Resource-Policy", "same-origin");
                response.set_header("Cross-Origin-Opener-Policy", "same-origin");
                response.set_header("Referrer-Policy", "no-referrer");
                response.set_header("Cache-Control", "no-store");
                response.set_content(file.text, typeOf(file.name));
            });
}

}
