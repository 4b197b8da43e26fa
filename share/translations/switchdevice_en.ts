<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>SwitchDevice</name>
    <message>
        <source>华为</source>
        <translation>Huawei</translation>
    </message>
    <message>
        <source>华三</source>
        <translation>Hua3</translation>
    </message>
    <message>
        <source>VLAN划分</source>
        <translation>VLAN assignment</translation>
    </message>
    <message>
        <source>组播</source>
        <translation>Multicast</translation>
    </message>
    <message>
        <source>查询器</source>
        <translation>IGMP querier</translation>
    </message>
    <message>
        <source>链路聚合</source>
        <translation>Link aggregation</translation>
    </message>
    <message>
        <source>镜像端口配置</source>
        <translation>Port mirroring</translation>
    </message>
    <message>
        <source>自协商开关</source>
        <translation>Auto-negotiation</translation>
    </message>
    <message>
        <source>POE设置</source>
        <translation>PoE settings</translation>
    </message>
    <message>
        <source>接口设置</source>
        <translation>Interface settings</translation>
    </message>
    <message>
        <source>接口设置命令:</source>
        <translation>Interface setting commands:</translation>
    </message>
    <message>
        <source>保存配置</source>
        <translation>Save configuration</translation>
    </message>
    <message>
        <source>清空配置</source>
        <translation>Clear configuration</translation>
    </message>
    <message>
        <source>导出配置</source>
        <translation>Export configuration</translation>
    </message>
    <message>
        <source>导出配置1</source>
        <translation>Export configuration1</translation>
    </message>
    <message>
        <source>文件配置</source>
        <translation>Configuration from file</translation>
    </message>
    <message>
        <source>vlan</source>
        <translation>vlan</translation>
    </message>
    <message>
        <source>端口状态监测</source>
        <translation>Port status monitoring</translation>
    </message>
    <message>
        <source>接口速率</source>
        <translation>Interface speed</translation>
    </message>
    <message>
        <source>光模块</source>
        <translation>Optical modules</translation>
    </message>
    <message>
        <source>IP冲突</source>
        <translation>IP conflicts</translation>
    </message>
    <message>
        <source>组播转发表</source>
        <translation>Multicast forwarding table</translation>
    </message>
    <message>
        <source>接口解析</source>
        <translation>Interface discovery</translation>
    </message>
    <message>
        <source>光电端口解析</source>
        <translation>Optical/electrical port discovery</translation>
    </message>
    <message>
        <source>用户名</source>
        <translation>User name</translation>
    </message>
    <message>
        <source>串口打开失败</source>
        <translation>Could not open the serial port: </translation>
    </message>
    <message>
        <source>已断开连接</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>用户名登录中</source>
        <translation>Logging in with the user name</translation>
    </message>
    <message>
        <source>密码登录中</source>
        <translation>Logging in with the password</translation>
    </message>
    <message>
        <source>已连console端口:</source>
        <translation>Connected to console port: </translation>
    </message>
    <message>
        <source>登录失败,检查用户名或者密码后重新连接</source>
        <translation>Login failed, check the user name or password and connect again</translation>
    </message>
    <message>
        <source>请先设置用户名</source>
        <translation>Please set the user name first</translation>
    </message>
    <message>
        <source>请先设置密码</source>
        <translation>Please set the password first</translation>
    </message>
    <message>
        <source>回读中...</source>
        <translation>Reading back...</translation>
    </message>
    <message>
        <source>回读失败</source>
        <translation>Read-back failed</translation>
    </message>
    <message>
        <source>登录成功..</source>
        <translation>Login succeeded..</translation>
    </message>
    <message>
        <source>登录失败</source>
        <translation>Login failed</translation>
    </message>
    <message>
        <source>执行中...</source>
        <translation> in progress...</translation>
    </message>
    <message>
        <source>执行结束</source>
        <translation> finished</translation>
    </message>
    <message>
        <source>执行失败</source>
        <translation> failed</translation>
    </message>
    <message>
        <source>执行失败，请重试...</source>
        <translation> failed, please try again...</translation>
    </message>
    <message>
        <source>导出文件写入失败：</source>
        <translation>Cannot write to the export file: </translation>
    </message>
    <message>
        <source>导出文件无法打开：</source>
        <translation>Cannot open the export file: </translation>
    </message>
    <message>
        <source>端口状态信息:</source>
        <translation>Port status:</translation>
    </message>
    <message>
        <source>未开启全局组播</source>
        <translation>Multicast is not enabled globally</translation>
    </message>
    <message>
        <source>没有组播配置</source>
        <translation>There is no multicast configuration</translation>
    </message>
    <message>
        <source>端口</source>
        <translation>Port </translation>
    </message>
    <message>
        <source>自协商状态:</source>
        <translation> auto-negotiation: </translation>
    </message>
    <message>
        <source>已开启</source>
        <translation>enabled</translation>
    </message>
    <message>
        <source>未开启</source>
        <translation>not enabled</translation>
    </message>
    <message>
        <source>镜像端口配置信息:</source>
        <translation>Port mirroring configuration:</translation>
    </message>
    <message>
        <source>镜像id:</source>
        <translation>Mirroring group ID:</translation>
    </message>
    <message>
        <source>源端口号:</source>
        <translation>source port:</translation>
    </message>
    <message>
        <source>目的端口号:</source>
        <translation>destination port:</translation>
    </message>
    <message>
        <source>镜像id：%1，源端口号%2，目的端口号%3</source>
        <translation>Mirroring group ID: %1, source port %2, destination port %3</translation>
    </message>
    <message>
        <source>配置正在清除 ，请5分钟后重新连接</source>
        <translation>The configuration is being cleared, please reconnect in 5 minutes</translation>
    </message>
    <message>
        <source>光模块信息:</source>
        <translation> optical module: </translation>
    </message>
    <message>
        <source>未检测到光模块</source>
        <translation> no optical module detected</translation>
    </message>
    <message>
        <source>交换机询问“%1”，已回答 N</source>
        <translation>the switch asked "%1" and was answered N</translation>
    </message>
    <message>
        <source>交换机已退出登录</source>
        <translation>the switch has ended the login</translation>
    </message>
    <message>
        <source>交换机已退出登录，有 %1 条命令没有执行</source>
        <translation>the switch has ended the login, %1 commands were not carried out</translation>
    </message>
    <message>
        <source>前面的命令被拒绝，没有执行 %1</source>
        <translation>a command before was refused, so %1 was not carried out</translation>
    </message>
    <message>
        <source>交换机拒绝了命令 %1：%2</source>
        <translation>the switch has refused the command %1: %2</translation>
    </message>
    <message>
        <source>命令 %1 的应答不完整</source>
        <translation>the reply to the command %1 is incomplete</translation>
    </message>
    <message>
        <source>命令 %1 的应答超过 16 MiB，其余部分被丢弃</source>
        <translation>the reply to the command %1 is longer than 16 MiB, the rest was dropped</translation>
    </message>
    <message>
        <source>交换机要求设置新密码，请先用终端程序设置，再重新连接</source>
        <translation>the switch wants a new password: set one with a terminal program, then connect again</translation>
    </message>
    <message>
        <source>交换机没有应答，请检查连接线和波特率</source>
        <translation>the switch does not answer, check the cable and the baud rate</translation>
    </message>
    <message>
        <source>%1超过 %2 条</source>
        <translation>there are more than %2 %1</translation>
    </message>
    <message>
        <source>命令</source>
        <translation>commands</translation>
    </message>
    <message>
        <source>%1 %2 不在 %3 之中</source>
        <translation>the %1 %2 is none of %3</translation>
    </message>
    <message>
        <source>%1为空</source>
        <translation>the %1 is empty</translation>
    </message>
    <message>
        <source>%1超过 %2 个</source>
        <translation>the %1 holds more than %2</translation>
    </message>
    <message>
        <source>未设置%1</source>
        <translation>the %1 has not been set</translation>
    </message>
    <message>
        <source>%1 %2 不在 %3 到 %4 之间</source>
        <translation>the %1 %2 is not from %3 to %4</translation>
    </message>
    <message>
        <source>%1 %2 既不是连字符也不是空格</source>
        <translation>the %1 %2 is neither a hyphen nor a blank</translation>
    </message>
    <message>
        <source>%1 %2 不是 %3 的端口</source>
        <translation>the %1 %2 is not a port of a %3</translation>
    </message>
    <message>
        <source>%1 %2 到 %3 不是 %4 到 %5 之内的递增范围</source>
        <translation>the %1 %2 to %3 does not go upwards from %4 to %5 at most</translation>
    </message>
    <message>
        <source>%1的接口类型 %2 不属于 %3</source>
        <translation>the interface type %2 of the %1 is none of a %3</translation>
    </message>
    <message>
        <source>未加载设备描述文件，未发送任何命令</source>
        <translation>no device description is loaded, nothing is sent</translation>
    </message>
    <message>
        <source>%1，未发送任何命令</source>
        <translation>%1; nothing is sent</translation>
    </message>
    <message>
        <source>槽位号</source>
        <translation>slot</translation>
    </message>
    <message>
        <source>VLAN号</source>
        <translation>VLAN id</translation>
    </message>
    <message>
        <source>链路聚合组</source>
        <translation>link aggregation group</translation>
    </message>
    <message>
        <source>镜像组</source>
        <translation>mirroring group</translation>
    </message>
    <message>
        <source>连接符</source>
        <translation>joining character</translation>
    </message>
    <message>
        <source>接口类型</source>
        <translation>interface type</translation>
    </message>
    <message>
        <source>链路聚合接口类型</source>
        <translation>link interface type</translation>
    </message>
    <message>
        <source>交换机类型</source>
        <translation>switch type</translation>
    </message>
    <message>
        <source>组播状态</source>
        <translation>multicast status</translation>
    </message>
    <message>
        <source>查询器状态</source>
        <translation>querier status</translation>
    </message>
    <message>
        <source>镜像状态</source>
        <translation>mirroring status</translation>
    </message>
    <message>
        <source>自协商状态</source>
        <translation>auto-negotiation status</translation>
    </message>
    <message>
        <source>PoE状态</source>
        <translation>PoE status</translation>
    </message>
    <message>
        <source>接口状态</source>
        <translation>interface status</translation>
    </message>
    <message>
        <source>下行端口范围</source>
        <translation>down port range</translation>
    </message>
    <message>
        <source>上行端口范围</source>
        <translation>up port range</translation>
    </message>
    <message>
        <source>链路聚合下行端口范围</source>
        <translation>link down port range</translation>
    </message>
    <message>
        <source>链路聚合上行端口范围</source>
        <translation>link up port range</translation>
    </message>
    <message>
        <source>PoE端口范围</source>
        <translation>PoE port range</translation>
    </message>
    <message>
        <source>镜像源端口</source>
        <translation>mirrored port</translation>
    </message>
    <message>
        <source>镜像目的端口</source>
        <translation>mirroring port</translation>
    </message>
    <message>
        <source>自协商端口</source>
        <translation>auto-negotiation port</translation>
    </message>
    <message>
        <source>PoE端口</source>
        <translation>PoE port</translation>
    </message>
    <message>
        <source>所列端口</source>
        <translation>listed port</translation>
    </message>
    <message>
        <source>端口列表</source>
        <translation>list of ports</translation>
    </message>
</context>
<context>
    <name>ConsolePort</name>
    <message>
        <source>未选择串口</source>
        <translation>no serial port is chosen</translation>
    </message>
    <message>
        <source>串口 %1 不支持波特率 %2</source>
        <translation>the serial port %1 does not support a speed of %2 baud</translation>
    </message>
    <message>
        <source>串口 %1 只支持8个数据位、无校验、1个停止位、无流控</source>
        <translation>the serial port %1 supports 8 data bits, no parity, 1 stop bit and no flow control only</translation>
    </message>
    <message>
        <source>串口 %1 无法使用：串口线程未运行</source>
        <translation>the serial port %1 cannot be used: the port thread is not running</translation>
    </message>
    <message>
        <source>串口 %1 不存在，请检查连接线</source>
        <translation>there is no serial port %1, check the cable</translation>
    </message>
    <message>
        <source>没有权限打开串口 %1</source>
        <translation>no permission to open the serial port %1</translation>
    </message>
    <message>
        <source>串口 %1 正被其他程序占用</source>
        <translation>the serial port %1 is in use by another program</translation>
    </message>
    <message>
        <source>%1 不是串口</source>
        <translation>%1 is not a serial port</translation>
    </message>
    <message>
        <source>打开串口 %1 超时</source>
        <translation>opening the serial port %1 takes too long</translation>
    </message>
    <message>
        <source>已取消打开串口 %1</source>
        <translation>opening the serial port %1 was cancelled</translation>
    </message>
    <message>
        <source>无法打开串口 %1：%2</source>
        <translation>the serial port %1 cannot be opened: %2</translation>
    </message>
    <message>
        <source>串口未打开</source>
        <translation>no serial port is open</translation>
    </message>
    <message>
        <source>串口 %1 发送超时</source>
        <translation>the serial port %1 takes too long to send</translation>
    </message>
    <message>
        <source>串口 %1 发送失败：%2</source>
        <translation>the serial port %1 cannot send: %2</translation>
    </message>
    <message>
        <source>串口 %1 已断开，请检查连接线</source>
        <translation>the serial port %1 is gone, check the cable</translation>
    </message>
    <message>
        <source>串口 %1 已打开，波特率 %2</source>
        <translation>serial port %1 opened at %2 baud</translation>
    </message>
    <message>
        <source>串口 %1 已关闭</source>
        <translation>serial port %1 closed</translation>
    </message>
</context>
</TS>
