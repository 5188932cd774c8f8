#include "Platform/Storage/FileStore.h"

#include <cerrno>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString FileResult::description() const
{
    if (!failure)
        return {};
    switch (*failure) {
    case Failure::NoSpace:
        return u"فضای دیسک کافی نیست."_s;
    case Failure::NotPermitted:
        return u"اجازه نوشتن در پوشه دانلودها وجود ندارد."_s;
    case Failure::NoFolder:
        return u"پوشه دانلودها پیدا نشد."_s;
    case Failure::Other:
        return u"نوشتن فایل روی دیسک انجام نشد."_s;
    }
    Q_UNREACHABLE();
}

FileResult FileResult::ofError(int number)
{
    switch (number) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return {Failure::NoSpace};
    case EACCES:
    case EPERM:
    case EROFS:
        return {Failure::NotPermitted};
    case ENOENT:
    case ENOTDIR:
        return {Failure::NoFolder};
    default:
        return {Failure::Other};
    }
}

} // namespace navorin
